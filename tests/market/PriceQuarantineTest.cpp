#include "market/PriceQuarantine.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Rows = SharePriceCache::Rows;

const String CODE = u"ABC.AX";

/// A code whose closes are known from the 2nd to the 6th of March 2026, at 10.00 a share.
class PriceQuarantineTest : public testing::Test {
protected:
  PriceQuarantineTest() {
    for (int day = 2; day <= 6; ++day)
      m_known.values[march(day)] = {.close = 10, .high = 10.5, .low = 9.5};
  }

  static Date march(int day) { return {2026, 3, day}; }
  static DataSource::Rows rows(const std::vector<std::pair<int, double>>& closes) {
    DataSource::Rows rows;
    for (const auto& [day, close] : closes)
      rows[march(day)] = {.close = close};
    return rows;
  }
  /// "6 10.00 jump": the days that are doubtful, with closes and reasons.
  std::vector<String> doubts(const Rows& fetched, bool mayChangeLevel = true) {
    const char16_t* names[] = {u"jump", u"unit", u"range", u"contradiction", u"currency", u"future"};
    std::vector<String> texts;
    for (const DoubtfulPrice& price : checkPrices(m_known, fetched, mayChangeLevel).doubtful)
      texts.push_back(String::fromLong(price.day.day()) + u' ' + String::fromDouble(price.value.close, 2) +
                      u' ' + names[static_cast<std::size_t>(price.reason)]);
    return texts;
  }
  using Texts = std::vector<String>;
  String file() const { return m_profile.dataFolder() + u"decisions.xml"; }

  TestProfile m_profile{"en_AU", Date(2026, 3, 20)};
  CachedShare m_known;
};

TEST_F(PriceQuarantineTest, PlausiblePricesAreGood) {
  EXPECT_EQ(doubts(rows({{9, 10.2}, {10, 29}, {11, 10}})), Texts{});
  EXPECT_EQ(checkPrices(m_known, rows({{9, 10.2}, {10, 29}})).good.size(), 2u);
  EXPECT_EQ(doubts({}), Texts{});
  m_known.values.clear();
  EXPECT_EQ(doubts(rows({{9, 0.01}})), Texts{}) << "nothing is known to compare it with";
  EXPECT_EQ(doubts(rows({{9, 0}, {10, 4}})), Texts{}) << "no price is no jump";
}

TEST_F(PriceQuarantineTest, AJumpOfMoreThanThreeTimesIsDoubtful) {
  EXPECT_EQ(doubts(rows({{9, 30.01}})), Texts{u"9 30.01 jump"});
  EXPECT_EQ(doubts(rows({{9, 3.33}})), Texts{u"9 3.33 jump"});
  EXPECT_EQ(doubts(rows({{9, 30}, {10, 3.34}})), Texts{u"10 3.34 jump"}) << "compared with the day before";
}

TEST_F(PriceQuarantineTest, ASpikeIsDoubtfulAndTheDaysBehindItAreNot) {
  EXPECT_EQ(doubts(rows({{9, 10}, {10, 50}, {11, 10}, {12, 10}, {13, 10}})), Texts{u"10 50.00 jump"});
  EXPECT_EQ(doubts(rows({{9, 50}, {10, 50}, {11, 10}, {12, 10}})),
            (Texts{u"9 50.00 jump", u"10 50.00 jump"}));
}

TEST_F(PriceQuarantineTest, ALevelThatRowsBehindItKeepIsGood) {
  const Rows split = rows({{9, 2}, {10, 2.1}, {11, 1.9}});
  EXPECT_EQ(doubts(split), Texts{});
  EXPECT_EQ(doubts(split, false), (Texts{u"9 2.00 jump", u"10 2.10 jump", u"11 1.90 jump"}));
  EXPECT_EQ(doubts(rows({{9, 2}, {10, 2.1}})), (Texts{u"9 2.00 jump", u"10 2.10 jump"})) << "too few of them";
}

TEST_F(PriceQuarantineTest, AnotherUnitIsDoubtfulHoweverLongItStays) {
  EXPECT_EQ(doubts(rows({{9, 1000}, {10, 1005}, {11, 1001}, {12, 1000}})),
            (Texts{u"9 1000.00 unit", u"10 1005.00 unit", u"11 1001.00 unit", u"12 1000.00 unit"}));
  EXPECT_EQ(doubts(rows({{9, 0.1}})), Texts{u"9 0.10 unit"});
}

TEST_F(PriceQuarantineTest, AnOlderPageInAnotherUnitIsDoubtful) {
  Rows older;
  older[Date(2026, 2, 26)] = {.close = 1001};
  older[Date(2026, 2, 27)] = {.close = 1000};
  EXPECT_EQ(doubts(older), (Texts{u"26 1001.00 unit", u"27 1000.00 unit"}));
  older[Date(2026, 2, 26)] = {.close = 40};
  older[Date(2026, 2, 27)] = {.close = 41};
  EXPECT_EQ(doubts(older), Texts{}) << "a split between the page and what is known";
}

TEST_F(PriceQuarantineTest, ACloseLiesBetweenLowAndHigh) {
  const auto page = [](double close, double high, double low) {
    return Rows{{march(9), {.close = close, .high = high, .low = low}}};
  };
  EXPECT_EQ(doubts(page(10, 10, 10)), Texts{});
  EXPECT_EQ(doubts(page(10, 9.995, 9)), Texts{}) << "rounded";
  EXPECT_EQ(doubts(page(10, 9.9, 9)), Texts{u"9 10.00 range"});
  EXPECT_EQ(doubts(page(10, 11, 10.1)), Texts{u"9 10.00 range"});
  EXPECT_EQ(doubts(page(10, 9, 11)), Texts{u"9 10.00 range"}) << "the high lies below the low";
  EXPECT_EQ(doubts(page(10, 0, 0)), Texts{}) << "neither is known";
}

TEST_F(PriceQuarantineTest, AnotherCloseOfAKnownDayIsDoubtful) {
  EXPECT_EQ(doubts(rows({{4, 10.09}, {5, 9.91}})), Texts{});
  EXPECT_EQ(doubts(rows({{4, 10.11}, {5, 9.89}})),
            (Texts{u"4 10.11 contradiction", u"5 9.89 contradiction"}));
  m_profile.setToday(march(6));
  EXPECT_EQ(doubts(rows({{6, 11}})), Texts{}) << "the day was not over";
  m_known.values[march(6)].origin = PriceOrigin::Typed;
  EXPECT_EQ(doubts(rows({{6, 1000}, {9, 10}})), Texts{})
      << "a typed price stays, and is what later ones follow";
  for (const PriceOrigin origin : {PriceOrigin::Current, PriceOrigin::Filled, PriceOrigin::Typed}) {
    m_known.values[march(4)].origin = origin;
    EXPECT_EQ(doubts(rows({{4, 11}})), Texts{});
  }
}

TEST_F(PriceQuarantineTest, ACurrentPriceIsComparedWithTheLastClose) {
  EXPECT_FALSE(checkCurrentPrice(m_known, march(9), 12));
  EXPECT_FALSE(checkCurrentPrice(CachedShare(), march(9), 12));
  const auto doubtful = checkCurrentPrice(m_known, march(9), 1000);
  ASSERT_TRUE(doubtful);
  EXPECT_EQ(doubtful->reason, DoubtReason::Unit);
  EXPECT_EQ(doubtful->value.origin, PriceOrigin::Current);
  EXPECT_EQ(doubtful->known->day, march(6));
  m_known.values[march(9)] = {.close = 900, .origin = PriceOrigin::Current};
  EXPECT_FALSE(checkCurrentPrice(m_known, march(9), 1000)) << "with that of the same day, if there is one";
}

TEST_F(PriceQuarantineTest, TheTextSaysWhatIsKnown) {
  const String known = u", but 10.00 of 06/03/2026 is known. ";
  EXPECT_EQ(doubtText(CODE, *checkCurrentPrice(m_known, march(9), 1000)),
            u"ABC.AX: 1000.00 of 09/03/2026" + known + u"One of them may be in cents or pence.");
  EXPECT_EQ(doubtText(CODE, *checkCurrentPrice(m_known, march(9), 2)),
            u"ABC.AX: 2.00 of 09/03/2026" + known +
                u"It may be a split, another unit or currency, or a mistake of the source.");
  const Rows outside{{march(9), {.close = 10, .high = 9, .low = 8}}};
  EXPECT_EQ(doubtText(CODE, checkPrices(m_known, outside).doubtful[0]),
            u"ABC.AX: 10.00 of 09/03/2026, with 8.00 as the low and 9.00 as the high. " +
                String(u"The close does not lie between the low and the high of the day."));
  EXPECT_EQ(doubtText(CODE, checkPrices(m_known, rows({{4, 5}})).doubtful[0]),
            u"ABC.AX: 5.00 of 04/03/2026, but 10.00 of 04/03/2026 is known. " +
                String(u"The source may have changed its closes after a split."));
}

TEST_F(PriceQuarantineTest, DoubtfulPricesWaitAndAreToldOnce) {
  PriceQuarantine quarantine(file());
  int told = 0;
  quarantine.changed = [&told] { ++told; };
  const Rows admitted = quarantine.admit(CODE, m_known, rows({{9, 10}, {10, 50}}));
  ASSERT_EQ(admitted.size(), 1u);
  EXPECT_EQ(admitted.begin()->first, march(9));
  EXPECT_EQ(quarantine.admit(CODE, m_known, rows({{9, 10}, {10, 51}})).size(), 1u);
  EXPECT_EQ(told, 1);
  ASSERT_EQ(quarantine.waiting().at(CODE).size(), 1u);
  EXPECT_EQ(quarantine.waiting().at(CODE).at(march(10)).value.close, 51);
  EXPECT_FALSE(quarantine.admitCurrent(CODE, m_known, march(11), {50}));
  EXPECT_TRUE(quarantine.admitCurrent(u"DEF.AX", CachedShare(), march(11), {50}));
  EXPECT_EQ(quarantine.waiting().at(CODE).size(), 2u);
}

TEST_F(PriceQuarantineTest, WhatTheSourceCorrectsWaitsNoLonger) {
  PriceQuarantine quarantine(file());
  int told = 0;
  quarantine.admit(CODE, m_known, rows({{9, 10}, {10, 50}}));
  quarantine.changed = [&told] { ++told; };
  quarantine.admit(CODE, m_known, rows({{9, 10}, {10, 10.2}}));
  EXPECT_TRUE(quarantine.waiting().empty());
  EXPECT_EQ(told, 1);
  quarantine.admitCurrent(CODE, m_known, march(11), {50});
  EXPECT_TRUE(quarantine.admitCurrent(CODE, m_known, march(11), {10}));
  EXPECT_TRUE(quarantine.waiting().empty());
}

TEST_F(PriceQuarantineTest, ALevelThatWaitsForADecisionIsNotConfirmedByFurtherDays) {
  PriceQuarantine quarantine(file());
  quarantine.admit(CODE, m_known, rows({{9, 2}}));
  EXPECT_TRUE(quarantine.admit(CODE, m_known, rows({{9, 2}, {10, 2}, {11, 2}})).empty());
  EXPECT_EQ(quarantine.waiting().at(CODE).size(), 3u);
}

TEST_F(PriceQuarantineTest, AcceptedPricesAreGivenBack) {
  PriceQuarantine quarantine(file());
  quarantine.admit(CODE, m_known, rows({{9, 2}, {10, 2.1}}));
  const PriceQuarantine::Prices accepted = quarantine.accept(CODE);
  ASSERT_EQ(accepted.size(), 2u);
  EXPECT_EQ(accepted.at(march(10)).value.close, 2.1);
  EXPECT_TRUE(quarantine.waiting().empty());
  EXPECT_FALSE(quarantine.admitCurrent(CODE, m_known, march(11), {1})) << "only these were accepted";
}

TEST_F(PriceQuarantineTest, RefusedPricesAreNeverAskedAboutAgain) {
  {
    PriceQuarantine quarantine(file());
    quarantine.admit(CODE, m_known, rows({{9, 2}}));
    quarantine.refuse(CODE);
    EXPECT_TRUE(quarantine.waiting().empty());
  }
  PriceQuarantine again(file());
  EXPECT_TRUE(again.admit(CODE, m_known, rows({{9, 2}})).empty());
  EXPECT_TRUE(again.waiting().empty());
  EXPECT_TRUE(again.admit(CODE, m_known, rows({{9, 2}, {10, 2}, {11, 2}})).empty())
      << "a refused level is not confirmed by further days";
  EXPECT_EQ(again.waiting().at(CODE).size(), 2u);
  again.accept(CODE);
  EXPECT_TRUE(again.admit(CODE, m_known, rows({{9, 2.5}})).empty());
  EXPECT_EQ(again.waiting().at(CODE).size(), 1u) << "another price";
}

TEST_F(PriceQuarantineTest, ATrustedCodeIsNotDoubtedForThatReasonAgain) {
  {
    PriceQuarantine quarantine(file());
    quarantine.admitCurrent(CODE, m_known, march(9), {1000});
    EXPECT_EQ(quarantine.acceptFromNowOn(CODE).size(), 1u);
  }
  PriceQuarantine again(file());
  EXPECT_TRUE(again.admitCurrent(CODE, m_known, march(9), {1000}));
  EXPECT_EQ(again.admit(CODE, m_known, rows({{9, 1000}})).size(), 1u);
  EXPECT_FALSE(again.admitCurrent(CODE, m_known, march(9), {50})) << "a jump is another reason";
  EXPECT_FALSE(again.admitCurrent(u"DEF.AX", m_known, march(9), {1000})) << "another code";
}

TEST_F(PriceQuarantineTest, AnotherCurrencyIsAskedAboutUntilItIsAccepted) {
  DataSource::Rows page;
  page.currency = u"USD";
  page[march(9)] = {.close = 10};
  page[march(10)] = {.close = 10.1};
  m_known.values[march(10)].origin = PriceOrigin::Typed;
  {
    PriceQuarantine quarantine(file());
    EXPECT_TRUE(quarantine.admit(CODE, m_known, page).empty());
    ASSERT_EQ(quarantine.waiting().at(CODE).size(), 1u) << "the other day's price was typed";
    const DoubtfulPrice& price = quarantine.waiting().at(CODE).at(march(9));
    EXPECT_EQ(doubtText(CODE, price),
              u"ABC.AX: 10.00 of 09/03/2026 is in USD, but prices of this stock are in AUD. " +
                  String(u"The source may mean another listing of the stock. Prices are not converted."));
    EXPECT_FALSE(quarantine.admitCurrent(CODE, m_known, march(11), {10, std::nullopt, u"USD"}));
    EXPECT_TRUE(quarantine.admitCurrent(CODE, m_known, march(11), {10, std::nullopt, u"AUD"}));
    EXPECT_EQ(quarantine.accept(CODE).size(), 1u);
  }
  PriceQuarantine later(file());
  EXPECT_EQ(later.admit(CODE, m_known, page).size(), 2u);
  EXPECT_TRUE(later.admitCurrent(CODE, m_known, march(11), {10, std::nullopt, u"USD"}));
  EXPECT_FALSE(later.admitCurrent(CODE, m_known, march(11), {10, std::nullopt, u"AUD"}))
      << "its prices are in USD now";
}

TEST_F(PriceQuarantineTest, ARefusedCurrencyIsNeitherTakenNorAskedAboutAgain) {
  {
    PriceQuarantine quarantine(file());
    quarantine.admitCurrent(CODE, m_known, march(9), {10, std::nullopt, u"USD"});
    quarantine.refuse(CODE);
  }
  PriceQuarantine later(file());
  EXPECT_FALSE(later.admitCurrent(CODE, m_known, march(10), {11, std::nullopt, u"USD"}));
  EXPECT_TRUE(later.waiting().empty());
  EXPECT_FALSE(later.admitCurrent(CODE, m_known, march(10), {11, std::nullopt, u"NZD"}));
  EXPECT_EQ(later.waiting().size(), 1u) << "another one";
}

TEST_F(PriceQuarantineTest, AnyCurrencyIsTakenFromNowOn) {
  PriceQuarantine quarantine(file());
  quarantine.admitCurrent(CODE, m_known, march(9), {10, std::nullopt, u"USD"});
  quarantine.acceptFromNowOn(CODE);
  PriceQuarantine later(file());
  EXPECT_TRUE(later.admitCurrent(CODE, m_known, march(10), {11, std::nullopt, u"NZD"}));
}

TEST_F(PriceQuarantineTest, WithoutACurrencyOfTheUserTheFirstOneThatIsToldIsTheStocks) {
  const TestProfile profile{"en", Date(2026, 3, 20)};
  EXPECT_TRUE(PriceQuarantine(file()).admitCurrent(CODE, m_known, march(9), {10, std::nullopt, u"USD"}));
  PriceQuarantine later(file());
  EXPECT_TRUE(later.admitCurrent(CODE, m_known, march(10), {10, std::nullopt, u"USD"}));
  EXPECT_FALSE(later.admitCurrent(CODE, m_known, march(10), {10, std::nullopt, u"AUD"}));
  EXPECT_EQ(later.waiting().at(CODE).at(march(10)).usualCurrency, u"USD");
}

TEST_F(PriceQuarantineTest, AnIndexHasNoCurrency) {
  PriceQuarantine quarantine(file());
  EXPECT_TRUE(quarantine.admitCurrent(u"^AORD", CachedShare(), march(9), {9000, std::nullopt, u"USD"}));
}

TEST_F(PriceQuarantineTest, PenceAreTold) {
  const DoubtfulPrice price{.day = march(9),
                            .value = {.close = 812},
                            .reason = DoubtReason::Currency,
                            .known = std::nullopt,
                            .currency = u"GBX",
                            .usualCurrency = u"GBP"};
  EXPECT_EQ(doubtText(CODE, price),
            u"ABC.AX: 812.00 of 09/03/2026 is in GBX, but prices of this stock are in GBP. " +
                String(u"100 GBX are 1 GBP: the source's document lacks the factor 0.01."));
}

TEST_F(PriceQuarantineTest, APriceOfADayToComeIsAskedAboutAndCountsOnItsDayOnceItIsAccepted) {
  const Date toCome(2026, 10, 3);
  DataSource::Rows page;
  page[march(9)] = {.close = 10};
  page.future[toCome] = {.close = 11};
  {
    PriceQuarantine quarantine(file());
    EXPECT_EQ(quarantine.admit(CODE, m_known, page).size(), 1u);
    ASSERT_EQ(quarantine.waiting().at(CODE).size(), 1u);
    EXPECT_EQ(
        doubtText(CODE, quarantine.waiting().at(CODE).at(toCome)),
        String(u"ABC.AX: 11.00 of 03/10/2026, a day to come. Day and month may have changed places: then "
               u"it is of 10/03/2026. It can't count before its day."));
    quarantine.accept(CODE);
    quarantine.admit(CODE, m_known, page);
    EXPECT_TRUE(quarantine.waiting().empty());
  }
  PriceQuarantine later(file());
  page.future.clear();
  EXPECT_EQ(later.admit(CODE, m_known, page).size(), 1u);
  m_profile.setToday(Date(2026, 10, 4));
  EXPECT_DOUBLE_EQ(later.admit(CODE, m_known, page).at(toCome).close, 11);
  m_known.values[toCome] = {.close = 12};
  EXPECT_FALSE(later.admit(CODE, m_known, page).contains(toCome)) << "the source has told another one";
}

TEST_F(PriceQuarantineTest, ACurrentPriceOfADayToComeIsAskedAbout) {
  PriceQuarantine quarantine(file());
  EXPECT_TRUE(quarantine.admitCurrent(CODE, m_known, march(20), {10, march(21), String()}))
      << "the exchange is a day ahead";
  EXPECT_FALSE(quarantine.admitCurrent(CODE, m_known, march(20), {10, march(22), String()}));
  EXPECT_EQ(
      doubtText(CODE, quarantine.waiting().at(CODE).at(march(22))),
      String(u"ABC.AX: 10.00 of 22/03/2026, a day to come. The source or the clock of this computer may be "
             u"wrong. It can't count before its day."));
  quarantine.refuse(CODE);
  EXPECT_FALSE(quarantine.admitCurrent(CODE, m_known, march(20), {10, march(22), String()}));
  EXPECT_TRUE(quarantine.waiting().empty());
}

TEST_F(PriceQuarantineTest, DecisionsThatCantBeReadAreKeptAside) {
  TestProfile::writeFile(file(), "<PriceDecisions><Refused");
  PriceQuarantine quarantine(file());
  quarantine.admit(CODE, m_known, rows({{9, 2}}));
  EXPECT_EQ(quarantine.waiting().size(), 1u);
  quarantine.refuse(CODE);
  EXPECT_EQ(TestProfile::readFile(file() + u".bak"), "<PriceDecisions><Refused");
  EXPECT_NE(TestProfile::readFile(file()).find("code=\"ABC.AX\""), std::string::npos);
}

TEST_F(PriceQuarantineTest, AReasonOfALaterVersionIsPassedOver) {
  TestProfile::writeFile(file(),
                         "<PriceDecisions><Trusted code=\"ABC.AX\" reason=\"mood\"/><Trusted code=\"ABC.AX\" "
                         "reason=\"jump\"/></PriceDecisions>");
  PriceQuarantine quarantine(file());
  EXPECT_TRUE(quarantine.admitCurrent(CODE, m_known, march(9), {50}));
}

TEST_F(PriceQuarantineTest, ADecisionThatCantBeWrittenCountsForTheRun) {
  PriceQuarantine quarantine(m_profile.dataFolder() + u"missing/decisions.xml");
  quarantine.admit(CODE, m_known, rows({{9, 2}}));
  EXPECT_THROW(quarantine.refuse(CODE), Exception);
  EXPECT_TRUE(quarantine.admit(CODE, m_known, rows({{9, 2}})).empty());
  EXPECT_TRUE(quarantine.waiting().empty());
}

} // namespace
} // namespace Tallymoor
