#include "market/URL.h"
#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

struct Case {
  const char16_t* text;
  const char16_t* host;
  const char16_t* path;
  std::uint32_t port;
  const char16_t* scheme;
  bool hasPort;
};

TEST(URL, SplitsHostPortAndPath) {
  const Case cases[] = {
      {u"host", u"host", u"/", 80, u"", false},
      {u"host:8080", u"host", u"/", 8080, u"", true},
      {u"http://host/a/b?c=d", u"host", u"/a/b?c=d", 80, u"http", false},
      {u"HTTPS://host", u"host", u"/", 80, u"https", false},
      {u"https://host:443/", u"host", u"/", 443, u"https", true},
      {u"://x", u"x", u"/", 80, u"", false},
      {u"://x:81/y", u"x", u"/y", 81, u"", true},
      {u"http://host:8080/a:b/c", u"host", u"/a:b/c", 8080, u"http", true},
      {u"http://host/a:80", u"host", u"/a:80", 80, u"http", false},
      {u"http://host:8080", u"host", u"/", 8080, u"http", true},
      {u"host:8080\\a", u"host", u"/a", 8080, u"", true},
      {u"host\\a\\b", u"host", u"/a\\b", 80, u"", false},
      {u"host//a", u"host", u"//a", 80, u"", false},
      {u"host?a=b", u"host?a=b", u"/", 80, u"", false},
      {u"host:", u"host", u"/", 0, u"", true},
      {u"host:x/y", u"host", u"/y", 0, u"", true},
      {u"host:12x/y", u"host", u"/y", 12, u"", true},
      {u"host/a?b=http://c", u"c", u"/", 80, u"host/a?b=http", false},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(String(expected.text).toUTF8());
    const URL url{String(expected.text)};
    EXPECT_EQ(url.host(), expected.host);
    EXPECT_EQ(url.path(), expected.path);
    EXPECT_EQ(url.port(), expected.port);
    EXPECT_EQ(url.whole(), expected.text);
    EXPECT_EQ(url.scheme(), expected.scheme);
    EXPECT_EQ(url.hasPort(), expected.hasPort);
  }
}

TEST(URL, RefusesAnAddressWithoutHost) {
  for (const char16_t* const text : {u"", u"http://", u"/path", u":80", u"\\x", u"http:///a"})
    try {
      const URL url{String(text)};
      ADD_FAILURE() << "no failure for " << String(text).toUTF8();
    } catch (const HTTPException& exception) {
      EXPECT_EQ(exception.message(), u"URL::URL - no host found ");
      EXPECT_EQ(exception.code(), 0u);
    }
}

} // namespace
} // namespace Tallymoor
