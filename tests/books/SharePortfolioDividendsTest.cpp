#include "analysis/FrankingCredit.h"
#include "books/BooksTest.h"
#include "books/PortfolioEvents.h"
#include "support/MessageOf.h"

namespace Tallymoor {
namespace {

class DividendsTest : public BooksTest {
protected:
  XMLDividendEvent& dividend(std::size_t place = 0) { return m_portfolio.dividends()[place]; }
  std::size_t numDividends() { return m_portfolio.dividends().size(); }
  /// All fields of a dividend in file order.
  String dividendText(std::size_t place = 0) {
    String text;
    for (const char16_t* reference : {u"Code", u"ReceiveDate", u"NumHeld", u"Rate", u"PercentFranked",
                                      u"DRPShares", u"DRPRate", u"ForeignDividend", u"WithholdingTax"})
      text = text + textValue(dividend(place), reference) + u'|';
    return text;
  }
  String parcelText(const String& code, std::size_t place = 0) {
    String text;
    for (const char16_t* reference : {u"BuyDate", u"NumHeld", u"BuyPrice", u"Brokerage", u"Comment"})
      text = text + textValue(parcel(code, place), reference) + u'|';
    return text;
  }
  void receiveInCash() { user().receiveDividend({u"ABC.AX", m_received, 100, 0.5, 100, 0, 0, u"", 0}); }
  void receiveInShares() { user().receiveDividend({u"ABC.AX", m_received, 100, 0.5, 100, 50, 1, u"", 0}); }
  /// Edits the only dividend.
  bool editCash(const Date& date, double rate, double drpShares, double drpRate,
                const String& code = u"ABC.AX") {
    return user().editDividend(dividend(), {code, date, 100, rate, 100, drpShares, drpRate, u"", 0}, 0, 0, 50,
                               m_received);
  }
  bool editShares(const Date& date, double drpShares, double drpRate, const String& code = u"ABC.AX") {
    return user().editDividend(dividend(), {code, date, 100, 0.5, 100, drpShares, drpRate, u"", 0}, 50, 1, 0,
                               m_received);
  }
  /// Creates days from a deposit on the first of the month to today.
  void makeRecord() {
    setPrices(u"ABC.AX", Date(2026, 1, 31), m_today, 2);
    setPrices(u"XYZ.AX", Date(2026, 1, 31), m_today, 2);
    user().creditCash(Date(2026, 2, 1), 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    m_interaction.cancelLengthyAfter(1000);
    updateCapitalRecord(user());
    ASSERT_TRUE(record().hasDayCap(m_today));
  }

  const Date m_received{2026, 2, 10};
};

TEST_F(DividendsTest, ACashDividendIsRecordedAndAddsToTheCash) {
  receiveInCash();
  EXPECT_EQ(dividendText(), String(u"ABC.AX|10/2/2026|100.00|0.500000|100|0.00|0.0000|||"));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 1 50.00 DIVIDEND ABC.AX @ 0.500000 x 100.00"));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(DividendsTest, NothingLessThanZeroIsRecorded) {
  receiveInCash();
  const String before = encodedPortfolio();
  const auto receiving = [this](double held, double rate, double shares, double price, double tax) {
    const auto receive = [&] {
      user().receiveDividend({u"ABC.AX", m_received, held, rate, 0, shares, price, u"", tax});
    };
    const auto edit = [&] {
      user().editDividend(dividend(), {u"ABC.AX", m_received, held, rate, 0, shares, price, u"", tax}, 0, 0,
                          50, m_received);
    };
    const String message = messageOf(receive);
    EXPECT_EQ(messageOf(edit), message);
    return message;
  };
  EXPECT_EQ(receiving(-1, 1, 0, 0, 0), u"The number of shares can't be less than zero.");
  EXPECT_EQ(receiving(1, -1, 0, 0, 0), u"The dividend rate can't be less than zero.");
  EXPECT_EQ(receiving(1, 1, -1, 0, 0), u"The number of shares can't be less than zero.");
  EXPECT_EQ(receiving(1, 1, 1, -1, 0), u"The share price can't be less than zero.");
  EXPECT_EQ(receiving(1, 1, 0, 0, -1), u"The withholding tax can't be less than zero.");
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(DividendsTest, TheRecordedValuesGiveTheFrankingCredit) {
  receiveInCash();
  const double credit = frankingCredit(doubleValue(dividend(), u"NumHeld"), doubleValue(dividend(), u"Rate"),
                                       doubleValue(dividend(), u"PercentFranked"));
  EXPECT_EQ(moneyText(credit), String(u"21.43"));
}

TEST_F(DividendsTest, EachFieldHasItsDecimals) {
  user().receiveDividend({u"ABC.AX", m_received, 33.337, 0.12345678, 70, 1.239, 2.34567, u"", 0});
  EXPECT_EQ(dividendText(), String(u"ABC.AX|10/2/2026|33.34|0.123457|70|1.24|2.3457|||"));
}

TEST_F(DividendsTest, AReinvestedDividendMakesAParcelAndNoCashEntry) {
  receiveInShares();
  EXPECT_EQ(dividendText(), String(u"ABC.AX|10/2/2026|100.00|0.500000|100|50.00|1.0000|||"));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(parcelText(u"ABC.AX"),
            String(u"10/2/2026|50.00|1.0000|0.00|DIVIDEND ABC.AX @ 0.500000 x 100.00|"));
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(DividendsTest, SharesThatShowAsNothingAreNoReinvestment) {
  user().receiveDividend({u"ABC.AX", m_received, 100, 0.5, 100, 0.00004, 1, u"", 0});
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 1u);
}

TEST_F(DividendsTest, WithholdingTaxLeavesTheCashGross) {
  user().receiveDividend({u"ABC.US", m_received, 100, 0.5, 0, 0, 0, u"United States", 5});
  EXPECT_EQ(dividendText(), String(u"ABC.US|10/2/2026|100.00|0.500000|0|0.00|0.0000|United States|5.00|"));
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 1 50.00 DIVIDEND ABC.US @ 0.500000 x 100.00"));
}

TEST_F(DividendsTest, ReceivingDropsTheDaysFromItsDate) {
  makeRecord();
  receiveInCash();
  EXPECT_TRUE(record().hasDayCap(m_received.plusDays(-1)));
  EXPECT_FALSE(record().hasDayCap(m_received));
  updateCapitalRecord(user());
  receiveInShares();
  EXPECT_TRUE(record().hasDayCap(m_received.plusDays(-1)));
  EXPECT_FALSE(record().hasDayCap(m_received));
}

// ---- Editing a dividend received in cash ----

TEST_F(DividendsTest, EditingACashDividendCarriesItsEntryAlong) {
  user().creditCash(m_received, 50, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  receiveInCash();
  EXPECT_TRUE(user().editDividend(dividend(), {u"ABC.AX", Date(2026, 2, 20), 200, 0.25, 60, 0, 0, u"Fiji", 3},
                                  0, 0, 50, m_received));
  EXPECT_EQ(dividendText(), String(u"ABC.AX|20/2/2026|200.00|0.250000|60|0.00|0.0000|Fiji|3.00|"));
  ASSERT_EQ(numCashEntries(), 2u);
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 4 50.00 DEPOSIT "));
  EXPECT_EQ(cashEntryText(1), String(u"20/2/2026 1 50.00 DIVIDEND ABC.AX @ 0.250000 x 200.00"));
}

TEST_F(DividendsTest, TheEntryIsFoundByTheOldDescription) {
  user().receiveDividend({u"ABC.AX", m_received, 50, 1, 100, 0, 0, u"", 0}); // Another 50.00 on that day.
  receiveInCash();
  EXPECT_TRUE(user().editDividend(dividend(1), {u"ABC.AX", m_received, 100, 0.6, 100, 0, 0, u"", 0}, 0, 0, 50,
                                  m_received));
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 1 50.00 DIVIDEND ABC.AX @ 1.000000 x 50.00"));
  EXPECT_EQ(cashEntryText(1), String(u"10/2/2026 1 60.00 DIVIDEND ABC.AX @ 0.600000 x 100.00"));
}

TEST_F(DividendsTest, AnEntryMustAgreeInEveryPart) {
  receiveInCash();
  const String description = textValue(m_portfolio.cashEvents()[0], u"Description");
  const auto editFails = [this, &description](const Date& date, double value, std::int32_t type,
                                              const String& text) {
    user().deleteCashEvent(m_portfolio.cashEvents()[0]);
    user().creditCash(date, value, type, text);
    const String before = cashEntryText(0);
    const bool failed = !editCash(m_received, 0.5, 0, 0);
    return failed && cashEntryText(0) == before && numCashEntries() == 1;
  };
  EXPECT_TRUE(editFails(m_received.plusDays(1), 50, CASH_EVENT_CREDIT, description));
  EXPECT_TRUE(editFails(m_received, 50.01, CASH_EVENT_CREDIT, description));
  EXPECT_TRUE(editFails(m_received, 50, CASH_EVENT_INTEREST, description));
  EXPECT_TRUE(editFails(m_received, 50, CASH_EVENT_CREDIT, u"DIVIDEND ABC.AX @ 0.500000 x 99.00"));
  EXPECT_FALSE(editFails(m_received, 50, CASH_EVENT_CREDIT, u"my " + description + u" at last"));
}

TEST_F(DividendsTest, ACashDividendThatIsReinvestedLosesItsEntry) {
  receiveInCash();
  EXPECT_TRUE(editCash(m_received, 0.5, 25, 2));
  EXPECT_EQ(numCashEntries(), 0u);
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(parcelText(u"ABC.AX"),
            String(u"10/2/2026|25.00|2.0000|0.00|DIVIDEND ABC.AX @ 0.500000 x 100.00|"));
  EXPECT_EQ(dividendText(), String(u"ABC.AX|10/2/2026|100.00|0.500000|100|25.00|2.0000|||"));
}

TEST_F(DividendsTest, WithoutItsEntryACashDividendIsReinvestedAllTheSame) {
  receiveInCash();
  user().deleteCashEvent(m_portfolio.cashEvents()[0]);
  EXPECT_FALSE(editCash(m_received, 0.5, 25, 2));
  EXPECT_EQ(numParcels(u"ABC.AX"), 1u);
}

TEST_F(DividendsTest, WithoutItsEntryACashDividendMakesNoSecondOne) {
  receiveInCash();
  user().deleteCashEvent(m_portfolio.cashEvents()[0]);
  EXPECT_FALSE(editCash(m_received, 0.7, 0, 0));
  EXPECT_EQ(numCashEntries(), 0u);
  EXPECT_EQ(dividendText(), String(u"ABC.AX|10/2/2026|100.00|0.700000|100|0.00|0.0000|||"));
}

TEST_F(DividendsTest, ACashDividendMayChangeItsStock) {
  receiveInCash();
  EXPECT_TRUE(editCash(m_received, 0.5, 0, 0, u"XYZ.AX"));
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 1 50.00 DIVIDEND XYZ.AX @ 0.500000 x 100.00"));
  EXPECT_EQ(dividendText(), String(u"XYZ.AX|10/2/2026|100.00|0.500000|100|0.00|0.0000|||"));
}

TEST_F(DividendsTest, CountryAndTaxCantBeCleared) {
  user().receiveDividend({u"ABC.US", m_received, 100, 0.5, 0, 0, 0, u"United States", 5});
  EXPECT_TRUE(user().editDividend(dividend(), {u"ABC.US", m_received, 100, 0.5, 0, 0, 0, u"", 0}, 0, 0, 50,
                                  m_received));
  EXPECT_EQ(dividendText(), String(u"ABC.US|10/2/2026|100.00|0.500000|0|0.00|0.0000|United States|5.00|"));
}

// ---- Editing a reinvested dividend ----

TEST_F(DividendsTest, EditingAReinvestedDividendCarriesItsParcelAlong) {
  receiveInShares();
  EXPECT_TRUE(editShares(Date(2026, 2, 12), 40, 1.25));
  EXPECT_EQ(dividendText(), String(u"ABC.AX|12/2/2026|100.00|0.500000|100|40.00|1.2500|||"));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(parcelText(u"ABC.AX"),
            String(u"12/2/2026|40.00|1.2500|0.00|DIVIDEND ABC.AX @ 0.500000 x 100.00|"));
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(DividendsTest, APurchaseIsNotTakenForTheParcelOfADividend) {
  const auto editMissesParcel = [this](const Date& date, double number, double price, double brokerage,
                                       const String& comment) {
    user().removeHeldShare(u"ABC.AX");
    user().addBuyEvent(u"ABC.AX", {date, number, price, brokerage, comment});
    const String before = parcelText(u"ABC.AX");
    const bool missed = !editShares(m_received, 60, 2);
    return missed && parcelText(u"ABC.AX") == before && numParcels(u"ABC.AX") == 1;
  };
  receiveInShares();
  EXPECT_TRUE(editMissesParcel(m_received.plusDays(1), 50, 1, 0, u"DIVIDEND"));
  EXPECT_TRUE(editMissesParcel(m_received, 50.01, 1, 0, u"DIVIDEND"));
  EXPECT_TRUE(editMissesParcel(m_received, 50, 1.0001, 0, u"DIVIDEND"));
  EXPECT_TRUE(editMissesParcel(m_received, 50, 1, 0.01, u"DIVIDEND"));
  EXPECT_TRUE(editMissesParcel(m_received, 50, 1, 0, u"dividend"));
  EXPECT_FALSE(editMissesParcel(m_received, 50, 1, 0, u"my DIVIDEND"));
}

TEST_F(DividendsTest, AReinvestedDividendTakenInCashLosesItsParcelAndItsStock) {
  receiveInShares();
  EXPECT_TRUE(editShares(Date(2026, 2, 11), 0, 0));
  EXPECT_EQ(user().findHeldShare(u"ABC.AX"), nullptr);
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"11/2/2026 1 50.00 DIVIDEND ABC.AX @ 0.500000 x 100.00"));
}

TEST_F(DividendsTest, TakenInCashTheOtherParcelsStay) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  receiveInShares();
  EXPECT_TRUE(editShares(m_received, 0, 0));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyDate"), String(u"1/1/2026"));
}

TEST_F(DividendsTest, WithoutItsParcelAReinvestedDividendIsTakenInCashAllTheSame) {
  receiveInShares();
  user().removeHeldShare(u"ABC.AX");
  EXPECT_FALSE(editShares(m_received, 0, 0));
  EXPECT_EQ(numCashEntries(), 1u);
}

TEST_F(DividendsTest, WithoutItsParcelAReinvestedDividendMakesNoSecondOne) {
  receiveInShares();
  user().removeHeldShare(u"ABC.AX");
  EXPECT_FALSE(editShares(m_received, 60, 1));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(DividendsTest, AReinvestedDividendMovesToAnotherStockWithItsParcel) {
  receiveInShares();
  EXPECT_TRUE(editShares(m_received, 50, 1, u"XYZ.AX"));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  ASSERT_EQ(numParcels(u"XYZ.AX"), 1u);
  EXPECT_EQ(parcelText(u"XYZ.AX"),
            String(u"10/2/2026|50.00|1.0000|0.00|DIVIDEND XYZ.AX @ 0.500000 x 100.00|"));
}

TEST_F(DividendsTest, EditingDropsTheDaysFromTheEarliestDate) {
  receiveInCash();
  makeRecord();
  EXPECT_TRUE(editCash(Date(2026, 2, 20), 0.5, 0, 0));
  EXPECT_TRUE(record().hasDayCap(m_received.plusDays(-1)));
  EXPECT_FALSE(record().hasDayCap(m_received));
  updateCapitalRecord(user());
  EXPECT_TRUE(user().editDividend(dividend(), {u"ABC.AX", Date(2026, 2, 5), 100, 0.5, 100, 0, 0, u"", 0}, 0,
                                  0, 50, Date(2026, 2, 20)));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 4)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 5)));
}

TEST_F(DividendsTest, EditingMayBeGivenTheTextsOfTheRecordItself) {
  user().receiveDividend({u"ABC.US", m_received, 100, 0.5, 0, 0, 0, u"United States", 5});
  XMLDividendEvent& event = dividend();
  EXPECT_TRUE(user().editDividend(
      event,
      {textValue(event, u"Code"), m_received, 100, 0.6, 0, 0, 0, textValue(event, u"ForeignDividend"), 6}, 0,
      0, 50, m_received));
  EXPECT_EQ(dividendText(), String(u"ABC.US|10/2/2026|100.00|0.600000|0|0.00|0.0000|United States|6.00|"));
}

// ---- Deleting ----

TEST_F(DividendsTest, DeletingACashDividendTakesItsEntry) {
  user().creditCash(m_received, 50, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  receiveInCash();
  EXPECT_TRUE(user().deleteDividend(dividend()));
  EXPECT_EQ(numDividends(), 0u);
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"10/2/2026 4 50.00 DEPOSIT "));
}

TEST_F(DividendsTest, TheEntryToDeleteIsKnownByItsStart) {
  receiveInCash();
  const auto deleteFinds = [this](const Date& date, double value, std::int32_t type, const String& text) {
    m_portfolio.subElement(u"Dividends").removeSubElements(u"DividendEvents");
    m_portfolio.subElement(u"CashReserve").removeSubElements(u"CashEvents");
    receiveInCash();
    user().deleteCashEvent(m_portfolio.cashEvents()[0]);
    user().creditCash(date, value, type, text);
    const bool found = user().deleteDividend(dividend());
    EXPECT_EQ(numCashEntries(), found ? 0u : 1u);
    EXPECT_EQ(numDividends(), 0u);
    return found;
  };
  EXPECT_TRUE(deleteFinds(m_received, 50, CASH_EVENT_CREDIT, u"DIVIDEND ABC.AX @ 0.7"));
  EXPECT_FALSE(deleteFinds(m_received, 50, CASH_EVENT_CREDIT, u"DIVIDEND ABC.AXX @ 0.5"));
  EXPECT_FALSE(deleteFinds(m_received, 50, CASH_EVENT_INTEREST, u"DIVIDEND ABC.AX @ 0.5"));
  EXPECT_FALSE(deleteFinds(m_received, 50.01, CASH_EVENT_CREDIT, u"DIVIDEND ABC.AX @ 0.5"));
  EXPECT_FALSE(deleteFinds(m_received.plusDays(-1), 50, CASH_EVENT_CREDIT, u"DIVIDEND ABC.AX @ 0.5"));
}

TEST_F(DividendsTest, DeletingAReinvestedDividendTakesItsParcel) {
  user().addBuyEvent(u"ABC.AX", {m_received, 50, 2, 0, u""});
  receiveInShares();
  EXPECT_TRUE(user().deleteDividend(dividend()));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyPrice"), String(u"2.0000"));
  receiveInShares();
  user().removeHeldShare(u"ABC.AX");
  receiveInShares();
  EXPECT_TRUE(user().deleteDividend(dividend()));
  EXPECT_EQ(user().findHeldShare(u"ABC.AX"), nullptr);
}

TEST_F(DividendsTest, TheParcelToDeleteIsKnownByDatePriceToTheCentAndNumber) {
  const auto deleteFinds = [this](const Date& date, double number, double price) {
    m_portfolio.subElement(u"Dividends").removeSubElements(u"DividendEvents");
    receiveInShares();
    user().removeHeldShare(u"ABC.AX");
    user().addBuyEvent(u"ABC.AX", {date, number, price, 30, u"bought"});
    const bool found = user().deleteDividend(dividend());
    EXPECT_EQ(numParcels(u"ABC.AX"), found ? 0u : 1u);
    EXPECT_EQ(numDividends(), 0u);
    return found;
  };
  EXPECT_TRUE(deleteFinds(m_received, 50, 1.004));
  EXPECT_FALSE(deleteFinds(m_received, 50, 1.006));
  EXPECT_FALSE(deleteFinds(m_received, 50.01, 1));
  EXPECT_FALSE(deleteFinds(m_received.plusDays(1), 50, 1));
}

TEST_F(DividendsTest, DeletingWithoutTheLinkStillRemovesTheDividend) {
  receiveInCash();
  user().deleteCashEvent(m_portfolio.cashEvents()[0]);
  EXPECT_FALSE(user().deleteDividend(dividend()));
  receiveInShares();
  user().removeHeldShare(u"ABC.AX");
  EXPECT_FALSE(user().deleteDividend(dividend()));
  EXPECT_EQ(numDividends(), 0u);
}

TEST_F(DividendsTest, TheOneThatIsMeantIsDeleted) {
  receiveInCash();
  user().receiveDividend({u"XYZ.AX", m_received, 10, 1, 0, 0, 0, u"", 0});
  EXPECT_TRUE(user().deleteDividend(dividend(1)));
  ASSERT_EQ(numDividends(), 1u);
  EXPECT_EQ(textValue(dividend(), u"Code"), String(u"ABC.AX"));
}

TEST_F(DividendsTest, ADividendOfAnotherPortfolioIsLeftAlone) {
  receiveInCash();
  const String before = encodedPortfolio();
  XMLDividendEvent other;
  EXPECT_FALSE(user().deleteDividend(other));
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(DividendsTest, DeletingDropsTheDaysFromItsDate) {
  receiveInShares();
  makeRecord();
  EXPECT_TRUE(user().deleteDividend(dividend()));
  EXPECT_TRUE(record().hasDayCap(m_received.plusDays(-1)));
  EXPECT_FALSE(record().hasDayCap(m_received));
  receiveInCash();
  updateCapitalRecord(user());
  EXPECT_TRUE(record().hasDayCap(m_today));
  EXPECT_TRUE(user().deleteDividend(dividend()));
  EXPECT_FALSE(record().hasDayCap(m_received));
}

} // namespace
} // namespace Tallymoor
