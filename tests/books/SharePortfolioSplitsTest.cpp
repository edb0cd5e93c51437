#include "books/BooksTest.h"
#include "books/SplitTerms.h"
#include "foundation/RunTimeSettings.h"

namespace Tallymoor {
namespace {

class SplitsTest : public BooksTest {
protected:
  SharesAt asOf(const XMLBuyEvent& event, const Date& date) { return user().adjustedBuyEvent(event, date); }
  SharesAt soldAsOf(const XMLSellEvent& event, const Date& date) {
    return user().adjustedSellEvent(event, date);
  }
  static String adjustmentsOf(const XMLElement& event) {
    String text;
    for (std::size_t i = 0; i < event.numSubElements(u"Adjustments"); ++i) {
      const XMLElement& adjustment = event.subElement(u"Adjustments", i);
      text = text + textValue(adjustment, u"StartDate") + u' ' + textValue(adjustment, u"Factor") + u';';
    }
    return text;
  }
  std::vector<FakeUserInteraction::Call> splitQuestions() { return m_interaction.calls(Kind::AskRatio); }

  /// Sets two consecutive prices of a stock bought long before.
  void setJump(double before, double after) {
    user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
    setPrice(u"ABC.AX", m_eve, before);
    setPrice(u"ABC.AX", m_splitDay, after);
  }

  const Date m_eve{2026, 2, 9};
  const Date m_splitDay{2026, 2, 10};
};

TEST_F(SplitsTest, AFactorCountsFromItsStartDate) {
  XMLBuyEvent& event = user().addBuyEvent(u"ABC.AX", {Date(2006, 3, 1), 100, 10, 0, u""});
  addAdjustment(event, Date(2006, 3, 10), 2);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 9)).number, 100);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 9)).price, 10);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 10)).number, 200);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 10)).price, 5);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2016, 3, 10)).number, 200);
}

TEST_F(SplitsTest, FactorsMultiplyDivideOrLeaveAlone) {
  XMLBuyEvent& event = user().addBuyEvent(u"ABC.AX", {Date(2006, 3, 1), 100, 10, 0, u""});
  addAdjustment(event, Date(2006, 3, 10), -4);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 10)).number, 25);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 10)).price, 40);
  addAdjustment(event, Date(2006, 3, 11), 1);
  addAdjustment(event, Date(2006, 3, 12), -1);
  addAdjustment(event, Date(2006, 3, 13), 3);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 12)).number, 25);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 13)).number, 75);
}

TEST_F(SplitsTest, AParcelBoughtOnTheDayIsNotAdjusted) {
  XMLBuyEvent& event = user().addBuyEvent(u"ABC.AX", {Date(2006, 3, 10), 100, 10, 0, u""});
  addAdjustment(event, Date(2006, 3, 10), 2);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 10)).number, 100);
  EXPECT_DOUBLE_EQ(asOf(event, Date(2006, 3, 11)).number, 200);
}

TEST_F(SplitsTest, ASoldParcelIsAdjustedOnlyWhileItWasHeld) {
  XMLSellEvent& event = addSale(u"ABC.AX", Date(2006, 3, 1), Date(2006, 3, 20), 100, 10, 6);
  addAdjustment(event, Date(2006, 3, 10), 2);
  EXPECT_DOUBLE_EQ(soldAsOf(event, Date(2006, 3, 1)).number, 100);
  EXPECT_DOUBLE_EQ(soldAsOf(event, Date(2006, 3, 9)).number, 100);
  EXPECT_DOUBLE_EQ(soldAsOf(event, Date(2006, 3, 10)).number, 200);
  EXPECT_DOUBLE_EQ(soldAsOf(event, Date(2006, 3, 19)).price, 5);
  EXPECT_DOUBLE_EQ(soldAsOf(event, Date(2006, 3, 20)).number, 100);
}

TEST_F(SplitsTest, LooksForAdjustmentsOfAVeryDay) {
  EXPECT_FALSE(user().hasHeldAdjustment(u"ABC.AX", m_splitDay));
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  addAdjustment(parcel(u"ABC.AX"), m_splitDay, 2);
  EXPECT_TRUE(user().hasHeldAdjustment(u"ABC.AX", m_splitDay));
  EXPECT_FALSE(user().hasHeldAdjustment(u"ABC.AX", m_eve));
  EXPECT_FALSE(user().hasSoldAdjustment(u"ABC.AX", m_splitDay));
  addAdjustment(addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 1, 1, 1), m_eve, 2);
  EXPECT_TRUE(user().hasSoldAdjustment(u"ABC.AX", m_eve));
  EXPECT_FALSE(user().hasSoldAdjustment(u"ABC.AX", m_splitDay));
}

TEST_F(SplitsTest, AFallByMoreThanHalfIsPutToTheUser) {
  setJump(10.00, 4.90);
  m_interaction.answerRatio(2);
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 4.9);
  const auto questions = splitQuestions();
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0].title, String(u"Possible share split"));
  EXPECT_EQ(
      questions[0].text,
      u"A possible share split was detected for the stock\nwith code ABC.AX around the day of \n" +
          m_splitDay.toString(DATE_DISPLAY_LOCAL) +
          u" at a value of 2:1.\nPlease confirm the share split ratio, or press cancel\nif this was just "
          u"stock value movement.");
  EXPECT_EQ(questions[0].ratio, (WholeRatio{2, 1}));
  EXPECT_EQ(questions[0].remark, String(u"  (shares after : shares before)"));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 2;"));
}

TEST_F(SplitsTest, AJumpWithinATenthOfAWholeRatioIsPutToTheUser) {
  struct Jump {
    double before;
    double after;
    const char16_t* ratio; ///< Empty if the price change suggests no split.
  };
  const Jump jumps[] = {{10, 5, u"2:1"},    {10, 5.5, u"2:1"}, {10, 5.51, u""},       {10, 6.06, u""},
                        {10, 3.03, u"3:1"}, {10, 1.9, u"5:1"}, {1, 1.81, u""},        {1, 1.82, u"2:1"},
                        {1, 2, u"2:1"},     {1, 4.7, u"5:1"},  {10, 7.34, u""},       {10, 9, u""},
                        {10, 11, u""},      {1, 1.5, u""},     {0.02, 0.011, u"2:1"}, {0.02, 0.0115, u""},
                        {200, 10, u"20:1"}, {10, 7.3, u"3:2"}, {10, 6.67, u"3:2"},    {10, 6.07, u"3:2"},
                        {10, 4.41, u"5:2"}, {10, 4, u"5:2"},   {10, 3.7, u"5:2"},     {10, 2.85, u"4:1"}};
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  for (const Jump& jump : jumps) {
    SCOPED_TRACE(jump.before);
    SCOPED_TRACE(jump.after);
    parcel(u"ABC.AX").removeSubElements(u"Adjustments");
    m_interaction.clearCalls();
    setPrice(u"ABC.AX", m_eve, jump.before);
    setPrice(u"ABC.AX", m_splitDay, jump.after);
    const bool expected = *jump.ratio != 0;
    if (expected)
      m_interaction.answerRatio(std::nullopt);
    priceWithSplitCheck(u"ABC.AX", m_splitDay);
    ASSERT_EQ(splitQuestions().size(), expected ? 1u : 0u);
    if (expected) {
      EXPECT_TRUE(splitQuestions()[0].text.contains(u" at a value of " + String(jump.ratio) + u"."));
    }
  }
}

TEST_F(SplitsTest, RatiosThatAreNotWholeAreProposedAndRecorded) {
  struct Split {
    double after;
    WholeRatio ratio;
    const char16_t* factors;
    double number;
  };
  for (const Split& split : {Split{6.67, {3, 2}, u"10/2/2026 3;10/2/2026 -2;", 150},
                             Split{4.05, {5, 2}, u"10/2/2026 5;10/2/2026 -2;", 250}}) {
    SCOPED_TRACE(split.after);
    m_interaction.clearCalls();
    if (numParcels(u"ABC.AX") > 0)
      user().removeHeldShare(u"ABC.AX");
    setJump(10.00, split.after);
    m_interaction.answerRatio(split.ratio);
    priceWithSplitCheck(u"ABC.AX", m_splitDay);
    ASSERT_EQ(splitQuestions().size(), 1u);
    EXPECT_EQ(splitQuestions()[0].ratio, split.ratio);
    EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(split.factors));
    EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_eve).number, 100);
    EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).number, split.number);
    EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).price, 1000 / split.number);
    priceWithSplitCheck(u"ABC.AX", m_splitDay);
    EXPECT_EQ(splitQuestions().size(), 1u);
  }
}

TEST_F(SplitsTest, ThreeSharesMayBecomeTwo) {
  reverseSplitRatioDetect = 1.4;
  setJump(2.00, 3.05);
  m_interaction.answerRatio(WholeRatio{3, 2});
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  ASSERT_EQ(splitQuestions().size(), 1u);
  EXPECT_EQ(splitQuestions()[0].ratio, (WholeRatio{3, 2}));
  EXPECT_TRUE(splitQuestions()[0].text.contains(u" at a value of 3:2."));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 2;10/2/2026 -3;"));
  EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).number, 200.0 / 3);
}

TEST_F(SplitsTest, ASplitThatASourceTellsIsAskedWithItsOwnRatio) {
  setJump(10.00, 5.30);
  m_prices.toldSplits[{u"ABC.AX", m_eve}] = 1.75; // a day beside that of the jump
  m_interaction.answerRatio(WholeRatio{7, 4});
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  ASSERT_EQ(splitQuestions().size(), 1u);
  EXPECT_EQ(splitQuestions()[0].text,
            u"A source of prices tells of a share split\nof the stock with code ABC.AX\non " +
                m_splitDay.toString(DATE_DISPLAY_LOCAL) +
                u" of 7:4.\nPlease confirm the ratio, or press cancel\nif there was no share split.");
  EXPECT_EQ(splitQuestions()[0].ratio, (WholeRatio{7, 4}));
  EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).number, 175);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u) << "the answer is recorded";
}

TEST_F(SplitsTest, AMergeThatASourceTellsIsAskedWithItsOwnRatio) {
  setJump(1.00, 9.00);
  m_prices.toldSplits[{u"ABC.AX", m_splitDay}] = 0.1;
  m_interaction.answerRatio(10);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  ASSERT_EQ(splitQuestions().size(), 1u);
  EXPECT_EQ(splitQuestions()[0].title, String(u"Possible reverse share split (share merge)"));
  EXPECT_TRUE(splitQuestions()[0].text.contains(u"tells of a reverse share split"));
  EXPECT_EQ(splitQuestions()[0].ratio, (WholeRatio{10, 1}));
  EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).number, 10);
}

TEST_F(SplitsTest, AToldSplitIsAskedAboutWithoutAJumpOnItsDayAlone) {
  setJump(5.00, 5.10); // the source has adjusted its closes
  m_prices.toldSplits[{u"ABC.AX", m_eve}] = 2;
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_TRUE(splitQuestions().empty()) << "of the day before";
  m_prices.toldSplits = {{{u"ABC.AX", m_splitDay}, 2}};
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u);
  EXPECT_DOUBLE_EQ(asOf(parcel(u"ABC.AX"), m_splitDay).number, 100);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u) << "the answer is recorded";
}

TEST_F(SplitsTest, AToldSplitThatIsRecordedNearbyIsNotAskedAboutAgain) {
  setJump(5.00, 5.10);
  addAdjustment(parcel(u"ABC.AX"), m_splitDay.plusDays(-3), 2);
  m_prices.toldSplits[{u"ABC.AX", m_splitDay}] = 2;
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_TRUE(splitQuestions().empty());
}

TEST_F(SplitsTest, AToldMergeDoesNotExplainAFall) {
  setJump(10.00, 5.00);
  m_prices.toldSplits[{u"ABC.AX", m_splitDay}] = 0.5;
  m_interaction.answerRatio(2);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  ASSERT_EQ(splitQuestions().size(), 1u);
  EXPECT_TRUE(splitQuestions()[0].text.startsWith(u"A possible share split was detected"));
}

TEST(ToldSplit, HasTheRatioOfTheSourceInWholeNumbers) {
  const auto proposed = [](double ratio) { return SuspectedSplit::told(ratio)->proposed(); };
  EXPECT_EQ(proposed(2), (WholeRatio{2, 1}));
  EXPECT_EQ(proposed(1.5), (WholeRatio{3, 2}));
  EXPECT_EQ(proposed(1.3333), (WholeRatio{4, 3}));
  EXPECT_EQ(proposed(1.05), (WholeRatio{21, 20}));
  EXPECT_EQ(proposed(0.05), (WholeRatio{20, 1}));
  EXPECT_TRUE(SuspectedSplit::told(0.05)->isMerge());
  for (const double none : {1.0, 0.0, -2.0, 1e9})
    EXPECT_FALSE(SuspectedSplit::told(none)) << none;
}

TEST_F(SplitsTest, SmallerRatiosAreProposedWhereTheOptionsLookForThem) {
  splitRatioDetect = 1.2;
  for (const auto& [after, ratio] : {std::pair{7.5, WholeRatio{4, 3}}, std::pair{8.0, WholeRatio{5, 4}}}) {
    SCOPED_TRACE(after);
    m_interaction.clearCalls();
    if (numParcels(u"ABC.AX") > 0)
      user().removeHeldShare(u"ABC.AX");
    setJump(10.00, after);
    m_interaction.answerRatio(std::nullopt);
    priceWithSplitCheck(u"ABC.AX", m_splitDay);
    EXPECT_EQ(splitQuestions()[0].ratio, ratio);
  }
}

TEST_F(SplitsTest, AnAnswerIsReducedAndEqualsAreNoSplit) {
  const std::pair<WholeRatio, const char16_t*> answers[] = {{{4, 2}, u"10/2/2026 2;"},
                                                            {{6, 4}, u"10/2/2026 3;10/2/2026 -2;"},
                                                            {{1, 4}, u"10/2/2026 -4;"},
                                                            {{7, 7}, u"10/2/2026 1;"}};
  setJump(10.00, 4.90);
  for (const auto& [ratio, factors] : answers) {
    parcel(u"ABC.AX").removeSubElements(u"Adjustments");
    m_interaction.answerRatio(ratio);
    priceWithSplitCheck(u"ABC.AX", m_splitDay);
    EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(factors));
  }
}

TEST_F(SplitsTest, ThreeForTwoMayBeDeniedAndCorrected) {
  setJump(10.00, 6.67);
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 1;"));
  addAdjustment(parcel(u"ABC.AX"), m_today, 5);
  user().recordAdjustments(u"ABC.AX", m_splitDay, {3, -2});
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 3;3/3/2026 5;10/2/2026 -2;"));
  user().recordAdjustment(u"ABC.AX", m_splitDay, 2, false);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 2;3/3/2026 5;"));
}

TEST_F(SplitsTest, ARiseByMoreThanDoubleIsPutToTheUserAsAMerge) {
  setJump(2.00, 7.60);
  m_interaction.answerRatio(3);
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 7.6);
  const auto questions = splitQuestions();
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0].title, String(u"Possible reverse share split (share merge)"));
  EXPECT_EQ(
      questions[0].text,
      u"A possible reverse share split was detected for the stock\nwith code ABC.AX around the day of \n" +
          m_splitDay.toString(DATE_DISPLAY_LOCAL) +
          u" at a value of 4:1.\nPlease confirm the reverse split ratio, or press cancel\nif this was just "
          u"stock value movement.");
  EXPECT_EQ(questions[0].ratio, (WholeRatio{4, 1}));
  EXPECT_EQ(questions[0].remark, String(u"  (shares before : shares after)"));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 -3;"));
}

TEST_F(SplitsTest, ThresholdsAreSettings) {
  setJump(10.00, 5.00);
  splitRatioDetect = 1.5;
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u);
  EXPECT_EQ(splitQuestions()[0].ratio, (WholeRatio{2, 1}));
}

TEST_F(SplitsTest, ACancelIsRecordedAndNotAskedAgain) {
  setJump(10.00, 4.00);
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions()[0].ratio, (WholeRatio{5, 2}));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 1;"));
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 4);
  EXPECT_EQ(splitQuestions().size(), 1u);
}

TEST_F(SplitsTest, ACancelledMergeIsRecordedAsMinusOne) {
  setJump(1.00, 4.00);
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 -1;"));
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u);
}

TEST_F(SplitsTest, TheAnswerGoesToWhatWasHeldAcrossTheDay) {
  setJump(10.00, 4.90);
  user().addBuyEvent(u"ABC.AX", {m_splitDay, 1, 1, 0, u""});
  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 1, 1, 1);
  addSale(u"ABC.AX", Date(2026, 1, 1), m_splitDay, 1, 1, 1);
  addSale(u"ABC.AX", m_splitDay, m_today, 1, 1, 1);
  m_interaction.answerRatio(2);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX", 0)), String(u"10/2/2026 2;"));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX", 1)), String());
  EXPECT_EQ(adjustmentsOf(sale(u"ABC.AX", 0)), String(u"10/2/2026 2;"));
  EXPECT_EQ(adjustmentsOf(sale(u"ABC.AX", 1)), String());
  EXPECT_EQ(adjustmentsOf(sale(u"ABC.AX", 2)), String());
}

TEST_F(SplitsTest, AnAdjustmentOfTheDayIsOverwritten) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  user().recordAdjustment(u"ABC.AX", m_splitDay, 2, false);
  user().recordAdjustment(u"ABC.AX", m_today, 5, false);
  user().recordAdjustment(u"ABC.AX", m_splitDay, 3, true);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"10/2/2026 -3;3/3/2026 5;"));
}

TEST_F(SplitsTest, AnAnswerCountsForItsOwnDayAndForWhatWasHeld) {
  setJump(10.00, 4.90);
  EXPECT_FALSE(user().isAdjusted(u"ABC.AX", m_splitDay));
  EXPECT_TRUE(user().isAdjusted(u"ABC.AX", Date(2026, 1, 1)));
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 1, 5), 2);
  EXPECT_FALSE(user().isAdjusted(u"ABC.AX", m_splitDay));
  m_interaction.answerRatio(std::nullopt);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(splitQuestions().size(), 1u);
  EXPECT_TRUE(user().isAdjusted(u"ABC.AX", m_splitDay));
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String(u"5/1/2026 2;10/2/2026 1;"));

  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 1, 1, 1);
  EXPECT_FALSE(user().isAdjusted(u"ABC.AX", m_splitDay));
}

TEST_F(SplitsTest, NoSplitIsSuspectedAgainstAStandIn) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  setPrice(u"ABC.AX", m_splitDay, 4.9);
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 4.9) << "yesterday's is the purchase's";
  setPrice(u"ABC.AX", m_eve.plusDays(-3), 10);
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 4.9) << "yesterday's is an earlier one";
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String());
}

TEST_F(SplitsTest, ABackgroundPassDoesNotAsk) {
  setJump(10.00, 4.90);
  const BackgroundPassScope pass;
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 4.9);
  EXPECT_EQ(adjustmentsOf(parcel(u"ABC.AX")), String());
}

} // namespace
} // namespace Tallymoor
