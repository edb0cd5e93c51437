#include "books/UnreadableDates.h"
#include "books/BooksTest.h"

namespace Tallymoor {
namespace {

class UnreadableDatesTest : public BooksTest {
protected:
  UnreadableDatesTest() {
    XMLSharePortfolio& element = m_records.portfolios().add();
    element.setPortfolioName(u"Damaged");
    m_damaged = std::make_unique<SharePortfolioUser>(element, m_prices);
    for (const char16_t* code : {u"ABC.AX", u"DEF.AX"}) {
      m_damaged->addBuyEvent(code, {Date(2026, 3, 1), 10, 5, 0, u""});
      setPrices(code, Date(2026, 2, 1), m_today, 5);
    }
    m_damaged->creditCash(Date(2026, 3, 1), 100, CASH_EVENT_DEPOSIT, u"");
    m_damaged->creditCash(Date(2026, 3, 1), 7, CASH_EVENT_DEPOSIT, u"");
  }
  XMLElement& purchaseDate() {
    return m_damaged->findHeldShare(u"ABC.AX")->parcels()[0].subElement(u"BuyDate");
  }
  double capital() {
    m_damaged->capitalRecord().recordsChangedFrom(m_damaged->capitalRecord().firstRecordDate());
    updateCapitalRecord(*m_damaged);
    return m_damaged->capitalToday();
  }
  /// Reads the saved records, as after a restart.
  std::vector<UnreadableDate> reload() {
    std::ostringstream text;
    m_records.encodeWithDoctype(text, u"x");
    const String name = m_profile.folder().c_str() + String(u"/records.xml");
    TestProfile::writeFile(name, text.str());
    m_damaged.reset();
    m_records.reset();
    m_records.decode(name);
    auto found = setAsideUnreadableDates(m_records);
    m_damaged = std::make_unique<SharePortfolioUser>(m_records.portfolios()[0], m_prices);
    return found;
  }

  XMLPortfolios m_records;
  std::unique_ptr<SharePortfolioUser> m_damaged;
};

TEST_F(UnreadableDatesTest, OneCostsItsEntryAlone) {
  EXPECT_TRUE(setAsideUnreadableDates(m_records).empty());
  EXPECT_DOUBLE_EQ(capital(), 207);
  purchaseDate().setValue(u"1st of <March>");
  EXPECT_FALSE(messageOf([this] { capital(); }).empty())
      << "nothing can be computed with the unreadable date";
  const auto found = setAsideUnreadableDates(m_records);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].portfolio, String(u"Damaged"));
  EXPECT_EQ(found[0].entry, String(u"ABC.AX, purchase 1"));
  EXPECT_EQ(found[0].text, String(u"1st of <March>"));
  EXPECT_DOUBLE_EQ(capital(), 157);
}

TEST_F(UnreadableDatesTest, EveryKindOfEntryIsFound) {
  m_damaged->receiveDividend({u"DEF.AX", Date(2026, 3, 2), 10, 1, 0, 0, 0, String(), 0});
  m_damaged->sellShares(u"DEF.AX", {Date(2026, 3, 2), 5, 5, 0, u""}, true);
  m_damaged->addBuyEvent(u"GHI.AX", {Date(2026, 2, 1), 10, 5, 0, u""});
  setPrices(u"GHI.AX", Date(2026, 1, 1), m_today, 5);
  m_damaged->recordAdjustment(u"GHI.AX", Date(2026, 3, 2), 2, false);
  XMLSharePortfolio& portfolio = m_damaged->portfolio();
  portfolio.cashEvents()[1].subElement(u"Date").setValue(u"");
  portfolio.dividends()[0].subElement(u"ReceiveDate").setValue(u"x");
  m_damaged->findSoldShare(u"DEF.AX")->subElement(u"SellEvents").subElement(u"SellDate").setValue(u"2026");
  m_damaged->findHeldShare(u"GHI.AX")
      ->subElement(u"BuyEvents")
      .subElement(u"Adjustments")
      .subElement(u"StartDate")
      .setValue(u"2/3");
  std::vector<String> entries;
  for (const UnreadableDate& date : setAsideUnreadableDates(m_records))
    entries.push_back(date.entry);
  EXPECT_EQ(entries, (std::vector<String>{u"GHI.AX, purchase 1, split 1", u"DEF.AX, sale 1",
                                          u"DEF.AX, dividend 1", u"cash reserve, entry 2"}));
  EXPECT_EQ(messageOf([this] { capital(); }), String());
}

TEST_F(UnreadableDatesTest, ItIsKeptInTheFileAndToldAgainUntilItIsPutRight) {
  purchaseDate().setValue(u"31.2.2026 & more");
  setAsideUnreadableDates(m_records);
  const auto again = reload();
  ASSERT_EQ(again.size(), 1u);
  EXPECT_EQ(again[0].text, String(u"31.2.2026 & more"));
  EXPECT_DOUBLE_EQ(capital(), 157);
  purchaseDate().setValue(u"2/3/2026");
  EXPECT_TRUE(reload().empty());
  EXPECT_FALSE(purchaseDate().hasAttribute(u"Unreadable"));
  EXPECT_DOUBLE_EQ(capital(), 207);
}

TEST_F(UnreadableDatesTest, TheTextIsKeptAsItStoodToTheLastCharacter) {
  const String odd =
      u"<1st> & \"2nd\" of 'M\u00e4rz'\t\r\n2026 or so, as somebody wrote it into the file by hand";
  purchaseDate().setValue(odd);
  setAsideUnreadableDates(m_records);
  for (int run = 0; run < 2; ++run) {
    const auto again = reload();
    ASSERT_EQ(again.size(), 1u);
    EXPECT_EQ(again[0].text, odd);
    EXPECT_EQ(purchaseDate().attribute(u"Unreadable"), odd);
    const String told = unreadableDatesText(again, "");
    EXPECT_TRUE(told.contains(odd.substr(0, 30) + u"...\"")) << told.toUTF8();
    EXPECT_FALSE(told.contains(odd.substr(0, 31))) << told.toUTF8();
  }
}

TEST_F(UnreadableDatesTest, APurchaseThatIsSetAsideIsNeitherHeldNorSold) {
  m_damaged->addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 4, 5, 0, u""});
  EXPECT_DOUBLE_EQ(m_damaged->numHeld(u"ABC.AX"), 14);
  purchaseDate().setValue(u"31.2.2026");
  setAsideUnreadableDates(m_records);
  EXPECT_DOUBLE_EQ(m_damaged->numHeld(u"ABC.AX"), 4);
  EXPECT_DOUBLE_EQ(m_damaged->proceedsOfSale(u"ABC.AX", {m_today, 4, 5, 1, String()}, true), 19);
  m_damaged->sellShares(u"ABC.AX", {m_today, 4, 5, 1, u""}, true);
  EXPECT_DOUBLE_EQ(m_damaged->numHeld(u"ABC.AX"), 0);
  EXPECT_EQ(purchaseDate().attribute(u"Unreadable"), String(u"31.2.2026"));
  purchaseDate().setValue(u"1/3/2026");
  EXPECT_DOUBLE_EQ(m_damaged->numHeld(u"ABC.AX"), 10) << "it has been put right";
}

TEST_F(UnreadableDatesTest, ASaleIsSetAsideWithBothItsDates) {
  m_damaged->sellShares(u"ABC.AX", {Date(2026, 3, 2), 10, 6, 0, u""}, true);
  EXPECT_DOUBLE_EQ(capital(), 217);
  XMLSellEvent& sale = m_damaged->findSoldShare(u"ABC.AX")->sales()[0];
  sale.subElement(u"SellDate").setValue(u"2nd of March");
  setAsideUnreadableDates(m_records);
  EXPECT_EQ(sale.bought(), XMLDate::farOff());
  EXPECT_EQ(sale.sold(), XMLDate::farOff());
  EXPECT_DOUBLE_EQ(capital(), 217) << "it is not held for ever; its cash entries count";
}

TEST_F(UnreadableDatesTest, TheTextNamesPortfolioStockAndLine) {
  EXPECT_EQ(unreadableDatesText({}, ""), String());
  const String text = unreadableDatesText({{u"Trading", u"ABC.AX, purchase 3", u"31.2"},
                                           {u"Trading", u"DEF.AX, sale 1", u"31.2"},
                                           {u"A", u"B", u"<&"},
                                           {u"A", u"B", u"none"},
                                           {u"A", u"B", u""}},
                                          "first<Empty></Empty>\n<Date>31.2</Date>\n\n<Date "
                                          "Unreadable=\"31.2\">1/1/9999</Date>\n<Date>&lt;&amp;</Date>");
  EXPECT_TRUE(text.contains(u"Trading, ABC.AX, purchase 3: \"31.2\" (line 2 of the file)\n"))
      << text.toUTF8();
  EXPECT_TRUE(text.contains(u"Trading, DEF.AX, sale 1: \"31.2\" (line 4 of the file)\n")) << text.toUTF8();
  EXPECT_TRUE(text.contains(u"A, B: \"<&\" (line 5 of the file)\n")) << text.toUTF8();
  EXPECT_TRUE(text.contains(u"A, B: \"none\"\n")) << text.toUTF8();
  EXPECT_TRUE(text.contains(u"A, B: \"\"\n")) << "any empty element could be it" << text.toUTF8();
}

TEST_F(UnreadableDatesTest, TheTextStaysShortWhateverTheFileHolds) {
  const String endless(100000, u'x');
  const std::vector<UnreadableDate> dates(20, {endless, endless, endless});
  EXPECT_LT(unreadableDatesText(dates, "").size(), 2000u);
}

} // namespace
} // namespace Tallymoor
