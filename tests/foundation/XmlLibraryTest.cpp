#include "foundation/XmlLibrary.h"
#include "foundation/String.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace Tallymoor {
namespace {

TEST(XmlLibraryTest, IsMadeReadyFromAnyThreadAtOnce) {
  terminateXmlLibrary();
  std::vector<std::thread> threads;
  std::vector<String> texts(4);
  for (String& text : texts)
    threads.emplace_back([&text] {
      ensureXmlLibrary();
      text = String("caf\xC3\xA9");
    });
  for (std::thread& thread : threads)
    thread.join();
  for (const String& text : texts)
    EXPECT_EQ(text, u"caf\u00E9");
}

TEST(XmlLibraryTest, EndsAndComesBack) {
  EXPECT_EQ(String(u"\u20AC").toUTF8(), "\xE2\x82\xAC");
  terminateXmlLibrary();
  terminateXmlLibrary();
  EXPECT_EQ(String(u"\u20AC").toUTF8(), "\xE2\x82\xAC");
  EXPECT_EQ(String("\xE2\x82\xAC"), u"\u20AC");
}

} // namespace
} // namespace Tallymoor
