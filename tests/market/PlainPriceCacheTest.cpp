#include "market/PlainPriceCache.h"
#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include "xml/PriceCache.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {
namespace {

// The fast reader must give the same result as the element reader, or nothing.

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE ShareValues SYSTEM \"Tallymoor Share Cache.dtd\">\n";

const std::string ROW = "<ShareValue><Date>3/11/2006</Date><Constant>1.5</Constant><Constant>2</Constant>"
                        "<Constant>1</Constant><Constant>7</Constant></ShareValue>";

/// The content of a file as text.
String told(const PriceCacheFile& file) {
  String text = file.code + (file.share.isBad ? u" bad" : u"");
  for (const auto& [day, value] : file.share.values)
    text += u"\n" + day.toString(DATE_DISPLAY_DMY) + u" " + String::fromDouble(value.close, 9) + u" " +
            String::fromDouble(value.high, 9) + u" " + String::fromDouble(value.low, 9) + u" " +
            String::fromLong(value.volume) + u" " + String::fromLong(static_cast<int>(value.origin));
  return text;
}

class PlainPriceCacheTest : public testing::Test {
protected:
  /// Reads by elements: an equivalent document in a form that the fast reader rejects.
  String toldByElements(const std::string& document) const {
    EXPECT_FALSE(readPlainPriceCache(document + "\n"));
    std::ofstream(m_path.toUTF8(), std::ios::binary) << document << "\n";
    try {
      return told(readPriceCache(m_path));
    } catch (const Exception&) {
      return u"refused";
    }
  }
  std::string written(const CachedShare& share) const {
    writePriceCache(m_path, u"ABC.AX", share);
    return TestProfile::readFile(m_path);
  }
  static CachedShare manyRows() {
    CachedShare share;
    share.isBad = true;
    for (int i = 0; i < 400; ++i)
      share.values[Date(2023, 12, 1).plusDays(i)] = {0.37 * i, i % 3 * 1.234567, i % 5 * 1.5, i % 7 * 1000,
                                                     static_cast<PriceOrigin>(i % 5)};
    return share;
  }

  TestProfile m_profile;
  const String m_path = m_profile.configFolder() + u"cache.xml";
};

TEST_F(PlainPriceCacheTest, ReadsTheProgramsFilesLikeTheElementReader) {
  for (const CachedShare& share : {manyRows(), CachedShare()}) {
    const std::string document = written(share);
    const auto plain = readPlainPriceCache(document);
    ASSERT_TRUE(plain);
    EXPECT_EQ(told(*plain), toldByElements(document));
    EXPECT_EQ(plain->share.values.size(), share.values.size());
    EXPECT_EQ(plain->share.isBad, share.isBad);
  }
}

TEST_F(PlainPriceCacheTest, LeavesEveryOtherFormToTheElementReader) {
  const auto document = [](const std::string& root) { return HEAD + root + "</ShareValues>"; };
  const std::string good = "<ShareValues><String>ABC</String>" + ROW;
  ASSERT_TRUE(readPlainPriceCache(document(good)));
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string text = document(good);
    text.replace(text.find(from), from.size(), to);
    return text;
  };
  for (const std::string& other : {std::string(),
                                   with("?>\n", "?>"),
                                   with("Cache.dtd\"", "Cache.dtd\" [<!ENTITY a \"b\">]") + " ",
                                   with("ABC", "A&amp;C"),
                                   with("ABC", "A\xC3\xA9"),
                                   with("<ShareValue>", "<ShareValue Origin=\"other\">"),
                                   with("<ShareValue>", "<ShareValue Other=\"typed\">"),
                                   with("3/11", "03/11"),
                                   with("3/11", "31/11"),
                                   with("3/11", "0/11"),
                                   with("3/11/2006", "2006/11/3"),
                                   with("1.5", "-1.5"),
                                   with("1.5", "1.5.5"),
                                   with("1.5", ""),
                                   with("1.5", "1e5"),
                                   with("7</", "70000000000</"),
                                   with("7</", "-7</"),
                                   with("</ShareValues>", ""),
                                   with("</ShareValues>", "<!-- --></ShareValues>"),
                                   with("</ShareValue>", "<Constant>1</Constant></ShareValue>")})
    EXPECT_FALSE(readPlainPriceCache(other)) << other;
}

TEST_F(PlainPriceCacheTest, AChangedByteNeverGivesADifferentResult) {
  CachedShare share;
  share.values[Date(2006, 11, 30)] = {12.345678, 13.0, 12.0, 1234, PriceOrigin::Typed};
  const std::string document = written(share);
  std::size_t accepted = 0;
  for (std::size_t i = HEAD.size(); i < document.size(); ++i)
    for (const char letter : std::string("0129./<>& -\"aN")) {
      std::string changed = document;
      changed[i] = letter;
      if (const auto plain = readPlainPriceCache(changed)) {
        ++accepted;
        EXPECT_EQ(told(*plain), toldByElements(changed)) << changed;
      }
    }
  EXPECT_GT(accepted, 100u);
}

TEST_F(PlainPriceCacheTest, LeavesADocumentBeyondTheLimitsToTheElementReader) {
  std::string rows;
  for (int i = 0; i < 65000; ++i)
    rows += ROW;
  const std::string head = HEAD + "<ShareValues><String>ABC</String>";
  EXPECT_TRUE(readPlainPriceCache(head + rows + "</ShareValues>"));
  EXPECT_FALSE(readPlainPriceCache(head + rows + ROW + "</ShareValues>"));
}

} // namespace
} // namespace Tallymoor
