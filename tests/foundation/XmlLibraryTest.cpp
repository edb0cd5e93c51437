#include "foundation/XmlLibrary.h"
#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>

namespace Tallymoor {
namespace {

/// True if the library is initialised, because only then it can create a reader.
bool hasReader() {
  return std::unique_ptr<xercesc::SAX2XMLReader>(xercesc::XMLReaderFactory::createXMLReader()) != nullptr;
}

TEST(XmlLibraryTest, CanBeInitialisedByAnyThread) {
  terminateXmlLibrary();
  std::vector<std::thread> threads;
  std::array<bool, 4> isReady{};
  for (bool& ready : isReady)
    threads.emplace_back([&ready] {
      ensureXmlLibrary();
      ready = hasReader();
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(isReady, (std::array{true, true, true, true}));
}

TEST(XmlLibraryTest, CanBeTerminatedAndInitialisedAgain) {
  ensureXmlLibrary();
  EXPECT_TRUE(hasReader());
  terminateXmlLibrary();
  terminateXmlLibrary();
  ensureXmlLibrary();
  EXPECT_TRUE(hasReader());
}

} // namespace
} // namespace Tallymoor
