#include "books/BooksWithGatewayTest.h"

namespace Tallymoor {
namespace {

class SharePortfolioUserTest : public BooksWithGatewayTest {};

TEST_F(SharePortfolioUserTest, FindsStocksByTheirWholeCode) {
  user().addBuyEvent(u"ABC.AX", {m_today, 1, 1, 0, u""});
  user().addBuyEvent(u"AB.AX", {m_today, 1, 1, 0, u""});
  addSale(u"SOLD.AX", Date(2026, 1, 1), m_today, 1, 1, 1);
  const SharePortfolioUser& constUser = user();
  EXPECT_EQ(textValue(*user().findHeldShare(u"AB.AX"), u"Code"), String(u"AB.AX"));
  EXPECT_EQ(constUser.findHeldShare(u"AB.AX"), user().findHeldShare(u"AB.AX"));
  EXPECT_EQ(user().findHeldShare(u"A"), nullptr);
  EXPECT_EQ(user().findHeldShare(u"SOLD.AX"), nullptr);
  EXPECT_EQ(textValue(*user().findSoldShare(u"SOLD.AX"), u"Code"), String(u"SOLD.AX"));
  EXPECT_EQ(constUser.findSoldShare(u"SOLD.AX"), user().findSoldShare(u"SOLD.AX"));
  EXPECT_EQ(constUser.findSoldShare(u"ABC.AX"), nullptr);
}

TEST_F(SharePortfolioUserTest, StartsAtTheEarliestPurchaseOrCashEvent) {
  EXPECT_EQ(user().portfolioStartDate(), m_today);
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 3), 1, 1, 0, u""});
  EXPECT_EQ(user().portfolioStartDate(), Date(2026, 2, 3));
  user().creditCash(Date(2026, 2, 2), 1, CASH_EVENT_DEPOSIT, u"");
  EXPECT_EQ(user().portfolioStartDate(), Date(2026, 2, 2));
  addSale(u"DEF.AX", Date(2026, 2, 1), m_today, 1, 1, 1);
  EXPECT_EQ(user().portfolioStartDate(), Date(2026, 2, 1));
}

TEST_F(SharePortfolioUserTest, AnEmptyPortfolioStartsOnTheViewDate) {
  Date::setFixedDate(Date(2025, 5, 5));
  EXPECT_EQ(user().portfolioStartDate(), Date(2025, 5, 5));
}

TEST_F(SharePortfolioUserTest, CountsSharesAdjustedForSplits) {
  EXPECT_EQ(user().numHeld(u"ABC.AX"), 0.0);
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2);
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 15), 50, 5, 0, u""});
  EXPECT_DOUBLE_EQ(user().numHeld(u"ABC.AX"), 250);
  Date::setFixedDate(Date(2026, 1, 31));
  EXPECT_DOUBLE_EQ(user().numHeld(u"ABC.AX"), 150);
}

TEST_F(SharePortfolioUserTest, NearestRecordedPriceLooksAtPurchasesAndBothEndsOfSales) {
  EXPECT_EQ(user().nearestRecordedPrice(u"ABC.AX", m_today), 0.0);
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 10), 1, 10, 0, u""});
  addSale(u"ABC.AX", Date(2026, 1, 1), Date(2026, 1, 31), 1, 20, 30);
  user().addBuyEvent(u"DEF.AX", {Date(2026, 1, 20), 1, 99, 0, u""});
  EXPECT_DOUBLE_EQ(user().nearestRecordedPrice(u"ABC.AX", Date(2025, 1, 1)), 20);
  EXPECT_DOUBLE_EQ(user().nearestRecordedPrice(u"ABC.AX", Date(2026, 1, 11)), 10);
  EXPECT_DOUBLE_EQ(user().nearestRecordedPrice(u"ABC.AX", m_today), 30);
}

TEST_F(SharePortfolioUserTest, TheFirstOfEquallyNearPricesWins) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 10), 1, 10, 0, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 1, 12, 0, u""});
  addSale(u"ABC.AX", Date(2026, 1, 10), Date(2026, 1, 12), 1, 20, 30);
  EXPECT_DOUBLE_EQ(user().nearestRecordedPrice(u"ABC.AX", Date(2026, 1, 11)), 10);
}

TEST_F(SharePortfolioUserTest, TodaysPriceIsTheUpdaters) {
  setPrice(u"ABC.AX", m_today, 7);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", m_today, false), 7);
  gateway().priceUpdater().addCode(u"ABC.AX");
  gateway().priceUpdater().setCurrentPrice(u"ABC.AX", 8);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", m_today, false), 8);
  // With a view date set, the updater's price is ignored, even if the view date is today.
  Date::setFixedDate(m_today);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", m_today, false), 7);
}

TEST_F(SharePortfolioUserTest, APastPriceIsTheCaches) {
  setPrice(u"ABC.AX", Date(2026, 3, 2), 7);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", Date(2026, 3, 2), true), 7);
}

TEST_F(SharePortfolioUserTest, AMissingPriceFallsBackOnTheRecords) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 10), 1, 10, 0, u""});
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", Date(2026, 2, 2), false), 10);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", m_today, false), 10);
}

TEST_F(SharePortfolioUserTest, TheLastKnownCloseStandsInBeforeAnyTransaction) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 1), 1, 10, 0, u""});
  setPrice(u"ABC.AX", Date(2025, 6, 2), 7);
  const DayPrice price = user().prices().priceOn(u"ABC.AX", Date(2026, 2, 2), false);
  EXPECT_DOUBLE_EQ(price.price, 7);
  EXPECT_EQ(price.standing, PriceStanding::LastClose);
  EXPECT_EQ(user().prices().priceOn(u"ABC.AX", Date(2025, 6, 2), false).standing, PriceStanding::Final);
  const DayPrice before = user().prices().priceOn(u"ABC.AX", Date(2025, 6, 1), false);
  EXPECT_DOUBLE_EQ(before.price, 10);
  EXPECT_EQ(before.standing, PriceStanding::Transaction);
}

TEST_F(SharePortfolioUserTest, AStandInIsInSharesOfTheDay) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 1, 10, 0, u""});
  user().recordAdjustments(u"ABC.AX", Date(2026, 2, 10), {3, -2});
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", Date(2026, 2, 9), false), 10);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", Date(2026, 2, 10), false), 10 / 1.5);
  setPrice(u"ABC.AX", Date(2026, 2, 8), 12);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", Date(2026, 2, 9), false), 12);
  EXPECT_DOUBLE_EQ(user().sharePriceFor(u"ABC.AX", m_today, false), 8);
}

TEST_F(SharePortfolioUserTest, NoPriceAtAllThrows) {
  EXPECT_EQ(messageOf([this] { user().sharePriceFor(u"ABC.AX", Date(2026, 2, 3), false); }),
            u"SharePortfolioUser::sharePriceFor - could not get price for ABC.AX at " +
                Date(2026, 2, 3).toString(DATE_DISPLAY_LOCAL));
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 10), 1, 0.00004, 0, u""});
  EXPECT_FALSE(messageOf([this] { user().sharePriceFor(u"ABC.AX", Date(2026, 2, 3), false); }).empty());
}

TEST_F(SharePortfolioUserTest, FiguresOfADayWithoutRecord) {
  EXPECT_EQ(user().sharesValueToday(), 0.0);
  EXPECT_EQ(user().cashReserveToday(), 0.0);
  EXPECT_EQ(user().dailyGain(), 0.0);
  EXPECT_EQ(user().weeklyGain(), 0.0);
  EXPECT_EQ(messageOf([this] { user().capitalToday(); }),
            u"SharePortfolioCapitalRecordUser::dayCapFor - doesn't have one for " +
                m_today.toString(DATE_DISPLAY_LOCAL));
}

TEST_F(SharePortfolioUserTest, FiguresOfToday) {
  user().creditCash(Date(2026, 3, 1), 500, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 100, 10, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 1), m_today, 12);
  checkCashReserve(user());
  EXPECT_DOUBLE_EQ(user().sharesValueToday(), 1200);
  EXPECT_DOUBLE_EQ(user().cashReserveToday(), 500);
  EXPECT_DOUBLE_EQ(user().capitalToday(), 1700);
}

TEST_F(SharePortfolioUserTest, DailyGainLeavesOutMoneyFromOutside) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 1), 100, 10, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 1, 31), Date(2026, 3, 2), 10);
  setPrice(u"ABC.AX", m_today, 11);
  user().creditCash(m_today, 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  checkCashReserve(user());
  EXPECT_DOUBLE_EQ(user().capitalToday(), 1200);
  EXPECT_DOUBLE_EQ(user().dailyGain(), 10); // From 1000 to 1200, including a deposit of 100.
}

TEST_F(SharePortfolioUserTest, WeeklyGainCountsFromFridayBeforeLastWeekend) {
  user().creditCash(Date(2026, 2, 27), 1000, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().creditCash(Date(2026, 3, 2), 200, CASH_EVENT_INTEREST, u"INTEREST ");
  checkCashReserve(user());
  EXPECT_DOUBLE_EQ(user().weeklyGain(), 20);
  EXPECT_DOUBLE_EQ(user().dailyGain(), 0);
}

TEST_F(SharePortfolioUserTest, AGainWithoutCapitalAtItsStartIsZero) {
  user().creditCash(Date(2026, 3, 2), 0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().creditCash(m_today, 100, CASH_EVENT_INTEREST, u"INTEREST ");
  checkCashReserve(user());
  EXPECT_EQ(user().dailyGain(), 0.0);
  EXPECT_EQ(user().weeklyGain(), 0.0);
}

TEST_F(SharePortfolioUserTest, IndexFigures) {
  EXPECT_FALSE(user().hasComparisonIndex());
  EXPECT_EQ(user().indexValueOn(m_today), 0.0);
  EXPECT_EQ(user().indexDailyGain(), 0.0);
  EXPECT_EQ(user().indexWeeklyGain(), 0.0);

  user().setComparisonIndex(u"^AORD");
  EXPECT_TRUE(user().hasComparisonIndex());
  EXPECT_EQ(user().comparisonIndex(), String(u"^AORD"));
  setPrice(u"^AORD", Date(2026, 2, 27), 80);
  setPrice(u"^AORD", Date(2026, 3, 2), 100);
  setPrice(u"^AORD", m_today, 120);
  EXPECT_DOUBLE_EQ(user().indexValueOn(Date(2026, 3, 2)), 100);
  EXPECT_DOUBLE_EQ(user().indexDailyGain(), 20);
  EXPECT_DOUBLE_EQ(user().indexWeeklyGain(), 50);
}

TEST_F(SharePortfolioUserTest, AnIndexWithoutPriceThrows) {
  user().setComparisonIndex(u"^AORD");
  EXPECT_FALSE(messageOf([this] { user().indexDailyGain(); }).empty());
}

TEST_F(SharePortfolioUserTest, AnEmptyIndexCodeTakesTheElementAway) {
  user().setComparisonIndex(u"^AORD");
  user().setComparisonIndex(String());
  EXPECT_FALSE(user().hasComparisonIndex());
  EXPECT_EQ(m_portfolio.numSubElements(u"ComparisonIndex"), 0u);
  EXPECT_EQ(user().comparisonIndex(), String());
  user().setComparisonIndex(u"^GSPC");
  EXPECT_EQ(user().comparisonIndex(), String(u"^GSPC"));
}

TEST_F(SharePortfolioUserTest, RenamingTakesTheCapitalRecordAlong) {
  user().creditCash(m_today, 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  checkCashReserve(user());
  record().save();
  EXPECT_TRUE(TestProfile::fileExists(m_profile.dataFolder() + u"TradingCapRecord.xml"));
  user().rename(u"Saving");
  EXPECT_EQ(user().name(), String(u"Saving"));
  EXPECT_EQ(textValue(m_portfolio, u"Name"), String(u"Saving"));
  EXPECT_FALSE(TestProfile::fileExists(m_profile.dataFolder() + u"TradingCapRecord.xml"));
  EXPECT_TRUE(TestProfile::fileExists(m_profile.dataFolder() + u"SavingCapRecord.xml"));
}

} // namespace
} // namespace Tallymoor
