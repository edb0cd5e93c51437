#include "market/SharePriceCache.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace Tallymoor {
namespace {

const String CODE = u"ABC.AX";
const char* const HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE ShareValues SYSTEM \"Tallymoor Share Cache.dtd\">\n";

class SharePriceCacheTest : public testing::Test {
protected:
  std::filesystem::path pathOf(const std::string& fileName) const { return m_directory.toUTF8() + fileName; }

  void writeFile(const std::string& fileName, const std::string& content) const {
    std::ofstream(pathOf(fileName), std::ios::binary) << content;
  }
  std::string readFile(const std::string& fileName) const {
    std::ifstream stream(pathOf(fileName), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }
  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(m_directory.toUTF8()))
      names.insert(item.path().filename());
    return names;
  }
  /// A document with rows of date and close.
  static std::string document(const std::string& code,
                              std::initializer_list<std::pair<std::string, std::string>> rows,
                              const std::string& attribute = {}) {
    std::string text = HEAD;
    text += "<ShareValues" + attribute + "><String>" + code + "</String>";
    for (const auto& [date, close] : rows)
      text += "<ShareValue><Date>" + date + "</Date><Constant>" + close +
              "</Constant><Constant>0</Constant><Constant>0</Constant><Constant>0</Constant></ShareValue>";
    return text + "</ShareValues>";
  }
  static double closeOf(SharePriceCache& cache, const Date& day) {
    const ShareValue* row = cache.share(CODE).find(day);
    return row ? row->close : -1.0;
  }

  TestProfile m_profile;
  const String m_directory = cacheDirectory(Platform::Instance(), APP_NAME);
};

// --- Reading

TEST_F(SharePriceCacheTest, ACodeWithoutAFileIsEmptyAndWritesNone) {
  SharePriceCache cache(m_directory);
  const CachedShare& share = cache.share(CODE);
  EXPECT_TRUE(share.values.empty());
  EXPECT_FALSE(share.modified);
  EXPECT_FALSE(share.isBad);
  cache.save();
  EXPECT_TRUE(files().empty());
}

TEST_F(SharePriceCacheTest, ReadsAllFieldsOfARow) {
  writeFile("PriceCache.ABC.AX.xml",
            std::string(HEAD) +
                "<ShareValues><String>ABC.AX</String><ShareValue><Date>3/11/2006</Date>"
                "<Constant>12.3400</Constant><Constant>12.5000</Constant>"
                "<Constant>12.1000</Constant><Constant>123456</Constant></ShareValue></ShareValues>");
  SharePriceCache cache(m_directory);
  const ShareValue* row = cache.share(CODE).find(Date(2006, 11, 3));
  ASSERT_NE(row, nullptr);
  EXPECT_DOUBLE_EQ(row->close, 12.34);
  EXPECT_DOUBLE_EQ(row->high, 12.5);
  EXPECT_DOUBLE_EQ(row->low, 12.1);
  EXPECT_EQ(row->volume, 123456);
  EXPECT_FALSE(cache.share(CODE).modified);
  EXPECT_EQ(cache.share(CODE).find(Date(2006, 11, 4)), nullptr);
}

TEST_F(SharePriceCacheTest, NumbersWithoutAValueReadAsZero) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", ""}, {"4/11/2006", "2.5"}}));
  SharePriceCache cache(m_directory);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 3)), 0.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 4)), 2.5);
}

TEST_F(SharePriceCacheTest, OfTwoRowsOfADateTheFirstCounts) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "1.5"}, {"3/11/2006", "2.5"}}));
  SharePriceCache cache(m_directory);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 3)), 1.5);
  EXPECT_EQ(cache.share(CODE).values.size(), 1u);
}

TEST_F(SharePriceCacheTest, RowsOutOfOrderAreSorted) {
  writeFile("PriceCache.ABC.AX.xml",
            document("ABC.AX", {{"5/11/2006", "3"}, {"3/11/2006", "1"}, {"4/11/2006", "2"}}));
  SharePriceCache cache(m_directory);
  double expected = 1.0;
  for (const auto& [day, value] : cache.share(CODE).values)
    EXPECT_DOUBLE_EQ(value.close, expected++);
  EXPECT_DOUBLE_EQ(expected, 4.0);
}

TEST_F(SharePriceCacheTest, OnlyTheTextTrueMarksACodeAsBad) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "1.5"}}, " IsBad=\"true\""));
  writeFile("PriceCache.DEF.AX.xml", document("DEF.AX", {{"3/11/2006", "1.5"}}, " IsBad=\"false\""));
  writeFile("PriceCache.GHI.AX.xml", document("GHI.AX", {{"3/11/2006", "1.5"}}, " IsBad=\"TRUE\""));
  SharePriceCache cache(m_directory);
  EXPECT_TRUE(cache.share(CODE).isBad);
  EXPECT_FALSE(cache.share(CODE).modified);
  EXPECT_FALSE(cache.share(u"DEF.AX").isBad);
  EXPECT_FALSE(cache.share(u"GHI.AX").isBad);
}

TEST_F(SharePriceCacheTest, ASingleRowWithoutAPriceIsTheOldMarkOfABadCode) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "0.0000"}}));
  SharePriceCache cache(m_directory);
  const CachedShare& share = cache.share(CODE);
  EXPECT_TRUE(share.isBad);
  EXPECT_TRUE(share.values.empty());
  EXPECT_TRUE(share.modified);
  cache.save();
  EXPECT_EQ(readFile("PriceCache.ABC.AX.xml"), document("ABC.AX", {}, " IsBad=\"true\""));
}

TEST_F(SharePriceCacheTest, TwoRowsWithoutAPriceAreNoMark) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "0"}, {"4/11/2006", "0"}}));
  SharePriceCache cache(m_directory);
  EXPECT_FALSE(cache.share(CODE).isBad);
  EXPECT_EQ(cache.share(CODE).values.size(), 2u);
}

TEST_F(SharePriceCacheTest, AFileIsReadOncePerRun) {
  SharePriceCache cache(m_directory);
  EXPECT_TRUE(cache.share(CODE).values.empty());
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "1.5"}}));
  EXPECT_TRUE(cache.share(CODE).values.empty());
}

// --- Files that can't be read

TEST_F(SharePriceCacheTest, AMalformedFileIsReportedAtTheFirstAccess) {
  writeFile("PriceCache.ABC.AX.xml", "<ShareValues><String>ABC.AX</String>");
  SharePriceCache cache(m_directory);
  EXPECT_TRUE(cache.shareOrEmpty(CODE).values.empty());
  EXPECT_THROW(cache.share(CODE), XMLException);
  EXPECT_TRUE(cache.share(CODE).values.empty());
}

TEST_F(SharePriceCacheTest, ATruncatedFileGivesNoRows) {
  std::string text = document("ABC.AX", {{"3/11/2006", "1.5"}, {"never", "2.5"}});
  writeFile("PriceCache.ABC.AX.xml", text);
  SharePriceCache cache(m_directory);
  EXPECT_THROW(cache.share(CODE), Exception);
  EXPECT_TRUE(cache.share(CODE).values.empty());
}

TEST_F(SharePriceCacheTest, AMalformedFileIsNeverOverwritten) {
  const std::string broken = "this is <not a document";
  writeFile("PriceCache.ABC.AX.xml", broken);
  SharePriceCache cache(m_directory);
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.5);
  cache.setTypedPrice(u"DEF.AX", Date(2006, 11, 3), 2.5);
  cache.save();
  EXPECT_EQ(readFile("PriceCache.ABC.AX.xml"), broken);
  EXPECT_EQ(readFile("PriceCache.DEF.AX.xml"),
            std::string(HEAD) +
                "<ShareValues><String>DEF.AX</String><ShareValue Origin=\"typed\"><Date>3/11/2006</Date>"
                "<Constant>2.5000</Constant><Constant>0.0000</Constant>"
                "<Constant>0.0000</Constant><Constant>0</Constant></ShareValue></ShareValues>");
}

TEST_F(SharePriceCacheTest, AFolderInPlaceOfAFileIsAFailureToo) {
  std::filesystem::create_directory(pathOf("PriceCache.ABC.AX.xml"));
  SharePriceCache cache(m_directory);
  EXPECT_THROW(cache.share(CODE), XMLException);
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.5);
  cache.save();
  EXPECT_TRUE(std::filesystem::is_directory(pathOf("PriceCache.ABC.AX.xml")));
}

// --- Writing

TEST_F(SharePriceCacheTest, WritesRowsInDateOrderWithFourToSixDecimals) {
  SharePriceCache cache(m_directory);
  cache.merge(
      CODE,
      {{Date(2006, 11, 10), {1.5, 1.75, 1.25, 2000}}, {Date(2006, 11, 9), {1.23456, 0, 2.3456789, 1000}}},
      {Date(2006, 11, 9), Date(2006, 11, 10)});
  cache.save();
  EXPECT_EQ(readFile("PriceCache.ABC.AX.xml"),
            std::string(HEAD) + "<ShareValues><String>ABC.AX</String>"
                                "<ShareValue><Date>9/11/2006</Date><Constant>1.234560</Constant>"
                                "<Constant>0.0000</Constant><Constant>2.345679</Constant>"
                                "<Constant>1000</Constant></ShareValue>"
                                "<ShareValue><Date>10/11/2006</Date><Constant>1.5000</Constant>"
                                "<Constant>1.7500</Constant><Constant>1.2500</Constant>"
                                "<Constant>2000</Constant></ShareValue></ShareValues>");
}

TEST_F(SharePriceCacheTest, APriceReadBackHasAsManyDecimalsAsTheCapitalRecord) {
  SharePriceCache cache(m_directory);
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.2345678);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 3)), 1.2345678);
  cache.save();
  SharePriceCache next(m_directory);
  EXPECT_DOUBLE_EQ(closeOf(next, Date(2006, 11, 3)), 1.234568);
}

TEST_F(SharePriceCacheTest, ACodeKeepsItsPointInTheFileName) {
  SharePriceCache cache(m_directory);
  cache.setBad(CODE, true);
  cache.save();
  EXPECT_EQ(files(), std::set<std::string>{"PriceCache.ABC.AX.xml"});
}

TEST_F(SharePriceCacheTest, ACodeWithSeparatorsStaysInTheFolder) {
  SharePriceCache cache(m_directory);
  const String code = u"../A/B";
  cache.setTypedPrice(code, Date(2006, 11, 3), 1.5);
  cache.save();
  ASSERT_EQ(files().size(), 1u);
  EXPECT_EQ(files().begin()->find('/'), std::string::npos);
  SharePriceCache next(m_directory);
  EXPECT_NE(next.share(code).find(Date(2006, 11, 3)), nullptr);
}

TEST_F(SharePriceCacheTest, ACodeWithMarkupComesBackIntact) {
  SharePriceCache cache(m_directory);
  const String code = u"A&B<C";
  cache.setBad(code, true);
  cache.save();
  SharePriceCache next(m_directory);
  EXPECT_EQ(next.badCodes(), std::vector<String>{code});
}

TEST_F(SharePriceCacheTest, WhatHasNotChangedIsNotWritten) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "1.5"}}));
  SharePriceCache cache(m_directory);
  cache.share(CODE);
  std::filesystem::remove(pathOf("PriceCache.ABC.AX.xml"));
  cache.save();
  EXPECT_TRUE(files().empty());
}

TEST_F(SharePriceCacheTest, ASaveResetsTheModifiedState) {
  SharePriceCache cache(m_directory);
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.5);
  EXPECT_TRUE(cache.share(CODE).modified);
  cache.save();
  EXPECT_FALSE(cache.share(CODE).modified);
}

TEST_F(SharePriceCacheTest, AFailureOfOneCodeDoesNotStopTheOthers) {
  SharePriceCache cache(m_directory);
  for (const char16_t* code : {u"AAA", u"BBB", u"CCC"})
    cache.setTypedPrice(code, Date(2006, 11, 3), 1.5);
  std::filesystem::create_directory(pathOf("PriceCache.BBB.xml"));
  EXPECT_THROW(cache.save(), Exception);
  EXPECT_NE(readFile("PriceCache.AAA.xml"), "");
  EXPECT_NE(readFile("PriceCache.CCC.xml"), "");
  EXPECT_TRUE(cache.share(u"BBB").modified);
  EXPECT_FALSE(cache.share(u"AAA").modified);
  std::filesystem::remove(pathOf("PriceCache.BBB.xml"));
  cache.save();
  EXPECT_NE(readFile("PriceCache.BBB.xml"), "");
}

// --- Clearing

TEST_F(SharePriceCacheTest, ClearForgetsEverythingAndDeletesEveryXmlFile) {
  SharePriceCache cache(m_directory);
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.5);
  cache.save();
  writeFile("of the user.xml", "<a/>");
  writeFile("of the user.txt", "text");
  cache.clear();
  EXPECT_EQ(files(), std::set<std::string>{"of the user.txt"});
  EXPECT_TRUE(cache.share(CODE).values.empty());
  cache.save();
  EXPECT_EQ(files(), std::set<std::string>{"of the user.txt"});
}

TEST_F(SharePriceCacheTest, AClearRemovesAMalformedFile) {
  writeFile("PriceCache.ABC.AX.xml", "<broken");
  SharePriceCache cache(m_directory);
  EXPECT_THROW(cache.share(CODE), XMLException);
  cache.clear();
  cache.setTypedPrice(CODE, Date(2006, 11, 3), 1.5);
  cache.save();
  EXPECT_NE(readFile("PriceCache.ABC.AX.xml"), "");
}

// --- Delisted codes

TEST_F(SharePriceCacheTest, WhetherACodeIsBadIsSeenFromTheHeadOfALongFile) {
  const auto rows = {std::pair<std::string, std::string>{"3/11/2006", "1.5"}, {"4/11/2006", "1.6"}};
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", rows));
  writeFile("PriceCache.BAD.AX.xml", document("BAD.AX", rows, " IsBad=\"true\""));
  writeFile("PriceCache.OLD.AX.xml", document("OLD.AX", {{"3/11/2006", "0.0000"}}));
  writeFile("PriceCache.HAND.AX.xml", "<ShareValues IsBad=\"true\"><String>HAND.AX</String></ShareValues>");
  SharePriceCache cache(m_directory);
  EXPECT_FALSE(cache.isBad(CODE));
  EXPECT_TRUE(cache.isBad(u"BAD.AX"));
  EXPECT_TRUE(cache.isBad(u"OLD.AX"));
  EXPECT_TRUE(cache.isBad(u"HAND.AX"));
  EXPECT_FALSE(cache.isBad(u"NONE.AX"));
  // The prices are read only now.
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "2.5"}, {"4/11/2006", "2.6"}}));
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 3)), 2.5);
  cache.setBad(CODE, true);
  EXPECT_TRUE(cache.isBad(CODE));
}

TEST_F(SharePriceCacheTest, BadCodesAreThoseOfMemoryAndOfAllFiles) {
  writeFile("PriceCache.ZZZ.AX.xml", document("ZZZ.AX", {}, " IsBad=\"true\""));
  writeFile("PriceCache.OLD.AX.xml", document("OLD.AX", {{"3/11/2006", "0"}}));
  writeFile("PriceCache.FINE.AX.xml", document("FINE.AX", {{"3/11/2006", "1"}}));
  writeFile("PriceCache.CLEARED.AX.xml", document("CLEARED.AX", {}, " IsBad=\"true\""));
  writeFile("PriceCache.BROKEN.AX.xml", "<ShareValues IsBad=\"true\">");
  writeFile("PriceCache.OTHER.AX.xml", document("STRAY.AX", {}, " IsBad=\"true\""));
  writeFile("unrelated.xml", document("UNRELATED", {}, " IsBad=\"true\""));
  SharePriceCache cache(m_directory);
  cache.setBad(u"MEM.AX", true);
  cache.setBad(u"CLEARED.AX", false);
  EXPECT_EQ(cache.badCodes(), (std::vector<String>{u"MEM.AX", u"OLD.AX", u"ZZZ.AX"}));
}

TEST_F(SharePriceCacheTest, ASameMarkAgainIsNoChange) {
  SharePriceCache cache(m_directory);
  cache.setBad(CODE, false);
  EXPECT_FALSE(cache.share(CODE).modified);
  cache.setBad(CODE, true);
  EXPECT_TRUE(cache.share(CODE).modified);
}

TEST_F(SharePriceCacheTest, AClearedMarkIsNotWritten) {
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {}, " IsBad=\"true\""));
  SharePriceCache cache(m_directory);
  cache.setBad(CODE, false);
  cache.save();
  EXPECT_EQ(readFile("PriceCache.ABC.AX.xml"), document("ABC.AX", {}));
}

// --- Merging and single prices

TEST_F(SharePriceCacheTest, GapsAreFilledWithTheLastCloseAndDaysBeforeTheFirstRowStayEmpty) {
  SharePriceCache cache(m_directory);
  cache.merge(CODE, {{Date(2006, 11, 10), {5.0, 5.5, 4.5, 100}}, {Date(2006, 11, 13), {6.0, 6.5, 5.5, 200}}},
              {Date(2006, 11, 8), Date(2006, 11, 15)});
  const CachedShare& share = cache.share(CODE);
  EXPECT_TRUE(share.modified);
  EXPECT_EQ(share.find(Date(2006, 11, 9)), nullptr);
  const ShareValue* saturday = share.find(Date(2006, 11, 11));
  ASSERT_NE(saturday, nullptr);
  EXPECT_DOUBLE_EQ(saturday->close, 5.0);
  EXPECT_DOUBLE_EQ(saturday->high, 0.0);
  EXPECT_DOUBLE_EQ(saturday->low, 0.0);
  EXPECT_EQ(saturday->volume, 0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 12)), 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 15)), 6.0);
  EXPECT_EQ(share.find(Date(2006, 11, 16)), nullptr);
}

TEST_F(SharePriceCacheTest, AFetchedRowReplacesWhatIsThereAndOtherRowsCarryOn) {
  SharePriceCache cache(m_directory);
  cache.noteCurrentPrice(CODE, Date(2006, 11, 8), 7.0);
  cache.noteCurrentPrice(CODE, Date(2006, 11, 10), 8.0);
  cache.merge(CODE, {{Date(2006, 11, 8), {5.0, 5.5, 4.5, 100}}}, {Date(2006, 11, 8), Date(2006, 11, 11)});
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 8)), 5.0);
  EXPECT_EQ(cache.share(CODE).find(Date(2006, 11, 8))->volume, 100);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 9)), 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 10)), 8.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 11)), 8.0);
}

// Otherwise the first days of a page that begins at a weekend would have no price.
TEST_F(SharePriceCacheTest, ARangeThatBeginsWithoutTradeGoesOnFromTheDayBefore) {
  SharePriceCache cache(m_directory);
  cache.setTypedPrice(CODE, Date(2006, 11, 10), 5.0); // A Friday.
  cache.merge(CODE, {{Date(2006, 11, 13), {6.0, 6.5, 5.5, 200}}}, {Date(2006, 11, 11), Date(2006, 11, 14)});
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 11)), 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 12)), 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 14)), 6.0);
}

TEST_F(SharePriceCacheTest, ACloseIsNotCarriedOverMoreDaysThanAMarketIsClosed) {
  for (const int firstRow : {21, 22}) {
    SharePriceCache cache(m_directory);
    cache.setTypedPrice(CODE, Date(2006, 11, 10), 5.0);
    cache.merge(CODE, {{Date(2006, 11, firstRow), {6.0, 6.5, 5.5, 200}}},
                {Date(2006, 11, 11), Date(2006, 11, 30)});
    EXPECT_EQ(cache.share(CODE).find(Date(2006, 11, 12)) != nullptr, firstRow == 21) << firstRow;
  }
}

TEST_F(SharePriceCacheTest, AFetchWithoutRowsFillsNothing) {
  SharePriceCache cache(m_directory);
  cache.merge(CODE, {}, {Date(2006, 11, 1), Date(2006, 11, 15)});
  EXPECT_TRUE(cache.share(CODE).values.empty());
  EXPECT_TRUE(cache.share(CODE).modified);
}

TEST_F(SharePriceCacheTest, ACurrentPriceMakesOrChangesARowWithoutAVolume) {
  SharePriceCache cache(m_directory);
  const Date today(2006, 11, 15);
  cache.noteCurrentPrice(CODE, today, 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, today), 5.0);
  EXPECT_EQ(cache.share(CODE).find(today)->volume, 0);
  EXPECT_TRUE(cache.share(CODE).modified);
  cache.noteCurrentPrice(CODE, today, 6.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, today), 6.0);
}

TEST_F(SharePriceCacheTest, ARowOfTheDataSourceIsKeptAgainstACurrentPrice) {
  SharePriceCache cache(m_directory);
  const Date today(2006, 11, 15);
  cache.merge(CODE, {{today, {5.0, 5.5, 4.5, 100}}}, {today, today});
  cache.save();
  cache.noteCurrentPrice(CODE, today, 6.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, today), 5.0);
  EXPECT_FALSE(cache.share(CODE).modified);
}

TEST_F(SharePriceCacheTest, ABadCodeStoresNoCurrentPrice) {
  SharePriceCache cache(m_directory);
  cache.setBad(CODE, true);
  cache.noteCurrentPrice(CODE, Date(2006, 11, 15), 6.0);
  EXPECT_TRUE(cache.share(CODE).values.empty());
}

TEST_F(SharePriceCacheTest, ACurrentPriceOfADayAfterTheRealTodayIsNotStored) {
  SharePriceCache cache(m_directory);
  cache.noteCurrentPrice(CODE, Date::realToday().plusDays(1), 6.0);
  EXPECT_TRUE(cache.share(CODE).values.empty());
}

TEST_F(SharePriceCacheTest, NothingReplacesATypedPrice) {
  SharePriceCache cache(m_directory);
  const Date day(2006, 11, 15);
  cache.setTypedPrice(CODE, day, 7.0);
  cache.noteCurrentPrice(CODE, day, 8.0);
  EXPECT_TRUE(cache.merge(CODE, {{day, {5.0, 5.5, 4.5, 100}}}, {day, day}).empty());
  EXPECT_DOUBLE_EQ(closeOf(cache, day), 7.0);
  cache.save();
  SharePriceCache next(m_directory);
  EXPECT_EQ(next.typedPrice(CODE, day), 7.0);
  EXPECT_EQ(next.typedPrice(CODE, day.plusDays(-1)), std::nullopt);
  next.merge(CODE, {{day, {5.0, 5.5, 4.5, 100}}}, {day, day});
  EXPECT_DOUBLE_EQ(closeOf(next, day), 7.0);
}

TEST_F(SharePriceCacheTest, DaysThatWereFilledInFollowATypedPrice) {
  SharePriceCache cache(m_directory);
  const Date friday(2006, 11, 10);
  const Date monday(2006, 11, 13);
  cache.merge(CODE, {{friday, {5.0, 5.5, 4.5, 100}}, {monday, {6.0, 6.5, 5.5, 200}}}, {friday, monday});
  EXPECT_EQ(cache.setTypedPrice(CODE, friday, 8.0),
            (SharePriceCache::Closes{{friday, 8.0}, {Date(2006, 11, 11), 8.0}, {Date(2006, 11, 12), 8.0}}));
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 12)), 8.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, monday), 6.0);
}

TEST_F(SharePriceCacheTest, AMergeReturnsTheChangedCloses) {
  SharePriceCache cache(m_directory);
  const Date friday(2006, 11, 10);
  cache.merge(CODE, {{friday, {5.0, 5.5, 4.5, 100}}}, {friday, Date(2006, 11, 12)});
  EXPECT_EQ(cache.merge(CODE,
                        {{friday, {5.0000001, 5.5, 4.5, 200}}, {Date(2006, 11, 13), {6.0, 6.5, 5.5, 200}}},
                        {friday, Date(2006, 11, 13)}),
            (SharePriceCache::Closes{{Date(2006, 11, 13), 6.0}}));
  EXPECT_EQ(cache.merge(CODE, {{friday, {5.5, 5.5, 4.5, 200}}}, {friday, Date(2006, 11, 13)}),
            (SharePriceCache::Closes{{friday, 5.5},
                                     {Date(2006, 11, 11), 5.5},
                                     {Date(2006, 11, 12), 5.5}})); // The weekend follows.
}

TEST_F(SharePriceCacheTest, ADayWithoutARowTakesThePreviousClose) {
  SharePriceCache cache(m_directory);
  cache.noteCurrentPrice(CODE, Date(2006, 11, 11), 9.0);
  cache.noteCurrentPrice(CODE, Date(2006, 11, 14), 9.5);
  cache.merge(CODE, {{Date(2006, 11, 10), {5.0, 5.5, 4.5, 100}}, {Date(2006, 11, 13), {6.0, 6.5, 5.5, 200}}},
              {Date(2006, 11, 10), Date(2006, 11, 14)});
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 11)), 5.0);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 14)), 9.5); // The source may not have that day yet.
}

TEST_F(SharePriceCacheTest, FuturePricesAreNotStored) {
  m_profile.setToday(Date(2006, 11, 14));
  SharePriceCache cache(m_directory);
  const Date tomorrow(2006, 11, 15);
  EXPECT_TRUE(cache.setTypedPrice(CODE, tomorrow, 7.0).empty());
  cache.noteCurrentPrice(CODE, tomorrow, 7.0);
  cache.merge(CODE, {{Date(2006, 11, 14), {5.0, 5.5, 4.5, 100}}, {tomorrow, {6.0, 6.5, 5.5, 200}}},
              {Date(2006, 11, 14), Date(2006, 11, 16)});
  EXPECT_EQ(cache.share(CODE).values.size(), 1u);
}

TEST_F(SharePriceCacheTest, FuturePricesInAFileAreDropped) {
  m_profile.setToday(Date(2006, 11, 3));
  writeFile("PriceCache.ABC.AX.xml", document("ABC.AX", {{"3/11/2006", "1.5000"}, {"4/11/2006", "2.5000"}}));
  SharePriceCache cache(m_directory);
  EXPECT_DOUBLE_EQ(closeOf(cache, Date(2006, 11, 3)), 1.5);
  EXPECT_EQ(cache.share(CODE).values.size(), 1u);
  cache.save();
  EXPECT_EQ(readFile("PriceCache.ABC.AX.xml").find("4/11/2006"), std::string::npos);
}

TEST_F(SharePriceCacheTest, ACloseIsFinalWhenALaterOneOfTheSourceIsKnownOrItIsOld) {
  m_profile.setToday(Date(2006, 11, 20));
  SharePriceCache cache(m_directory);
  const auto isFinal = [&cache](const Date& day) { return cache.closeOn(CODE, day)->isFinal; };
  const Date friday(2006, 11, 17);
  cache.merge(CODE, {{friday, {5.0, 5.5, 4.5, 0}}}, {friday, Date(2006, 11, 19)});
  EXPECT_FALSE(isFinal(friday));
  EXPECT_FALSE(isFinal(Date(2006, 11, 19)));
  cache.noteCurrentPrice(CODE, Date(2006, 11, 20), 6.0);
  EXPECT_FALSE(isFinal(friday)) << "a current price says nothing of the days before";
  cache.save();
  SharePriceCache next(m_directory);
  EXPECT_FALSE(next.closeOn(CODE, friday)->isFinal);
  m_profile.setToday(Date(2006, 11, 28));
  EXPECT_TRUE(next.closeOn(CODE, friday)->isFinal) << "eleven days are more than a market is closed";
  EXPECT_FALSE(next.closeOn(CODE, Date(2006, 11, 20))->isFinal) << "a current price is no close";
  m_profile.setToday(Date(2006, 11, 20));
  cache.merge(CODE, {{Date(2006, 11, 20), {7.0, 7.5, 6.5, 0}}}, {friday, Date(2006, 11, 20)});
  EXPECT_TRUE(isFinal(friday));
  EXPECT_TRUE(isFinal(Date(2006, 11, 19)));
  EXPECT_FALSE(isFinal(Date(2006, 11, 20)));
  cache.setTypedPrice(CODE, Date(2006, 11, 20), 7.5);
  EXPECT_TRUE(isFinal(Date(2006, 11, 20)));
}

TEST_F(SharePriceCacheTest, TheLastCloseBeforeADayIsOfAnyAgeAndNotZero) {
  writeFile("PriceCache.ABC.AX.xml",
            document("ABC.AX", {{"3/11/2001", "1.5"}, {"4/11/2005", "0"}, {"3/11/2006", "2.5"}}));
  SharePriceCache cache(m_directory);
  const auto last = cache.lastCloseBefore(CODE, Date(2006, 11, 3));
  ASSERT_TRUE(last);
  EXPECT_EQ(last->day, Date(2001, 11, 3));
  EXPECT_DOUBLE_EQ(last->close, 1.5);
  EXPECT_FALSE(cache.lastCloseBefore(CODE, Date(2001, 11, 3)));
  EXPECT_FALSE(cache.closeOn(CODE, Date(2005, 11, 4)));
}

TEST_F(SharePriceCacheTest, ATypedPriceKeepsHighAndLowButNotTheVolume) {
  SharePriceCache cache(m_directory);
  const Date day(2006, 11, 15);
  cache.merge(CODE, {{day, {5.0, 5.5, 4.5, 100}}}, {day, day});
  cache.setTypedPrice(CODE, day, 7.0);
  const ShareValue* row = cache.share(CODE).find(day);
  EXPECT_DOUBLE_EQ(row->close, 7.0);
  EXPECT_DOUBLE_EQ(row->high, 5.5);
  EXPECT_DOUBLE_EQ(row->low, 4.5);
  EXPECT_EQ(row->volume, 0);
}

TEST_F(SharePriceCacheTest, ATypedHighAndLowMakeTheDayATypedOne) {
  SharePriceCache cache(m_directory);
  const Date day(2006, 11, 15);
  cache.setTypedRange(CODE, day, 6.0, 5.0);
  EXPECT_TRUE(cache.share(CODE).values.empty()) << "no close";
  cache.merge(CODE, {{day, {5.0, 5.5, 4.5, 100}}}, {day, day});
  cache.setTypedRange(CODE, day, 5.25, 4.75);
  cache.merge(CODE, {{day, {5.0, 5.5, 4.5, 100}}}, {day, day});
  cache.save();
  SharePriceCache next(m_directory);
  const ShareValue* row = next.share(CODE).find(day);
  EXPECT_DOUBLE_EQ(row->high, 5.25);
  EXPECT_DOUBLE_EQ(row->low, 4.75);
  EXPECT_EQ(next.typedPrice(CODE, day), 5.0);
}

} // namespace
} // namespace Tallymoor
