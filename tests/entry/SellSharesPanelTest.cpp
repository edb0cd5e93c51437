#include "entry/SellSharesPanel.h"
#include "BrokenPlatform.h"
#include "PortfolioFormTest.h"
#include "books/CashBalance.h"
#include "entry/StockChoice.h"
#include "foundation/LinuxPlatform.h"
#include "market/StockNames.h"
#include "session/BookQuestions.h"
#include "widgets/FXCalendar.h"

namespace Tallymoor {
namespace {

constexpr const char* NO_CODE = "You must choose the share to sell";
constexpr const char* FUTURE_DATE = "You can't specify a sell date in the future.";
constexpr const char* NO_RECORD = "No capital record for the sell date. Please refesh the capital record";
constexpr const char* NOT_HELD = "No shares were held to sell on this date.";
constexpr const char* NOT_ENOUGH_THEN = "Not enough shares were held to sell this much on this date.";
constexpr const char* NO_NUMBER = "You must select the number of shares sold";
constexpr const char* NOT_ENOUGH_NOW = "You can't sell more shares than you own";
constexpr const char* NO_PRICE = "Do you really want to record a sell price of $0.00?";
constexpr const char* NO_BROKERAGE = "Are you sure there was no brokerage charged\nfor this purchase?";
constexpr const char* NEW_DEFAULT = "Would you like to make this the default\nbrokerage rate?";

class SellSharesPanelTest : public PortfolioFormTest {
protected:
  void SetUp() override {
    PortfolioFormTest::SetUp();
    m_panel = new SellSharesPanel(mainWindow().contentFrame(), &user());
    m_panel->create();
    letEventsPass();
  }
  void set(const std::string& label, const std::string& text) { type(field(*m_panel, label), text); }
  std::string shown(const std::string& label) { return field(*m_panel, label).getText().text(); }
  StockChoice& codes() { return *find<StockChoice>(*m_panel); }
  bool hasFocus(const std::string& label) { return focused(*m_panel) == &field(*m_panel, label); }
  void expectRefused(const char* message, const std::string& label) {
    answer(message, "OK");
    EXPECT_FALSE(m_panel->validate());
    EXPECT_TRUE(hasFocus(label)) << label;
  }

  SellSharesPanel* m_panel = nullptr;
};

TEST_F(SellSharesPanelTest, BeginsWithItsInitialValues) {
  EXPECT_EQ(String(u"Sell Shares"), m_panel->title());
  EXPECT_EQ("<select held stock>", shown("Stock code"));
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ("0.00", shown("Number sold"));
  EXPECT_EQ("0.0000", shown("Share price"));
  EXPECT_EQ("50.00", shown("Brokerage paid"));
  EXPECT_EQ("03/03/2026", shown("Date sold"));
  EXPECT_EQ(String(), m_panel->comments());
  EXPECT_TRUE(shows(*m_panel, "Sale reasons, comments, indicators"));
  EXPECT_FALSE(field(*m_panel, "Stock code").isEditable());
  EXPECT_EQ(&field(*m_panel, "Stock code"), m_panel->firstField());
}

TEST_F(SellSharesPanelTest, EachHeldCodeIsInTheListOnce) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10.0, 2.0, 0.0, String()});
  m_panel->reset();
  EXPECT_EQ((std::vector<std::string>{"<select held stock>", "ABC.AX", "XYZ.AX"}), entries(codes()));
}

TEST_F(SellSharesPanelTest, TheListOfALongPortfolioScrolls) {
  EXPECT_EQ(3, codes().getNumVisible());
  for (int i = 0; i < 30; ++i)
    user().addBuyEvent(u"S" + String::fromLong(i), {Date(2026, 3, 1), 10.0, 2.0, 0.0, String()});
  m_panel->reset();
  EXPECT_EQ(33, codes().getNumItems());
  EXPECT_EQ(12, codes().getNumVisible());
}

TEST_F(SellSharesPanelTest, ACodePassedInFillsNumberAndPriceWithoutAsking) {
  m_panel->reset(u"XYZ.AX");
  EXPECT_EQ(String(u"XYZ.AX"), m_panel->code());
  EXPECT_EQ("50.00", shown("Number sold"));
  EXPECT_EQ("7.2500", shown("Share price"));
  EXPECT_EQ(&field(*m_panel, "Number sold"), m_panel->firstField());
  m_panel->reset(u"GONE.AX");
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ("0.00", shown("Number sold"));
}

TEST_F(SellSharesPanelTest, ChoosingAStockFillsItsPriceAndAllShares) {
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ(String(u"ABC.AX"), m_panel->code());
  EXPECT_EQ(100.0, m_panel->number());
  EXPECT_EQ(2.5, m_panel->price());
}

TEST_F(SellSharesPanelTest, ChoosingThePromptLeavesTheNumbers) {
  choose(*m_panel, "ABC.AX");
  choose(*m_panel, "<select held stock>");
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ(100.0, m_panel->number());
}

TEST_F(SellSharesPanelTest, AStockWithoutAPriceIsToldBesideItAndItsSharesShown) {
  user().addBuyEvent(u"FREE.AX", {Date(2026, 3, 2), 30.0, 0.0, 0.0, String()});
  m_panel->reset();
  set("Share price", "9");
  choose(*m_panel, "FREE.AX");
  EXPECT_TRUE(shows(*m_panel, "No price is known."));
  EXPECT_EQ(0.0, m_panel->price()); // Not the price of another stock.
  EXPECT_EQ(30.0, m_panel->number());
}

TEST_F(SellSharesPanelTest, AFailureOfTheListIsReported) {
  spoilParcel(u"ABC.AX");
  whenModal("SellSharesPanel::onListChanged failed. ", [this](FXWindow& box) { press(box, "OK"); });
  choose(*m_panel, "ABC.AX");
}

TEST_F(SellSharesPanelTest, AnotherPortfolioHasItsOwnStocks) {
  choose(*m_panel, "ABC.AX");
  m_panel->setPortfolio(nullptr);
  EXPECT_EQ(1, codes().getNumItems());
  EXPECT_EQ(0.0, m_panel->number());
  answer(NO_CODE, "OK");
  EXPECT_FALSE(m_panel->validate());
  m_panel->setPortfolio(&user());
  EXPECT_EQ(3, codes().getNumItems());
}

TEST_F(SellSharesPanelTest, ReturnsTheTypedValues) {
  choose(*m_panel, "ABC.AX");
  set("Number sold", "1,234.50");
  set("Share price", "12.5 ");
  set("Brokerage paid", "9.99");
  set("Date sold", " 28/02/2026 ");
  find<FXText>(*m_panel)->setText("dear &\nshaky");
  EXPECT_EQ(1234.5, m_panel->number());
  EXPECT_EQ(12.5, m_panel->price());
  EXPECT_EQ(9.99, m_panel->brokerage());
  EXPECT_EQ(Date(2026, 2, 28), m_panel->date());
  EXPECT_EQ(String(u"dear &\nshaky"), m_panel->comments());
}

// The checks, in order

TEST_F(SellSharesPanelTest, TheChecksComeInTheirOrder) {
  set("Date sold", "04/03/2026");
  set("Number sold", "100.0001");
  set("Brokerage paid", "0");
  expectRefused(NO_CODE, "Stock code");
  m_panel->reset(u"XYZ.AX");
  set("Date sold", "04/03/2026");
  set("Number sold", "0");
  set("Share price", "0");
  set("Brokerage paid", "0");
  expectRefused(FUTURE_DATE, "Date sold");
  set("Date sold", "20/02/2026");
  expectRefused(NO_RECORD, "Date sold");
  set("Date sold", "28/02/2026");
  expectRefused(NOT_HELD, "Date sold");
  set("Date sold", "03/03/2026");
  set("Number sold", "50.0001");
  expectRefused(NOT_ENOUGH_THEN, "Number sold");
  set("Number sold", "0");
  expectRefused(NO_NUMBER, "Number sold");
  set("Number sold", "50");
  answer(NO_PRICE, "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_TRUE(hasFocus("Share price"));
  answer(NO_PRICE, "Yes");
  answer(NO_BROKERAGE, "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_TRUE(hasFocus("Brokerage paid"));
  answer(NO_PRICE, "Yes");
  answer(NO_BROKERAGE, "Yes");
  answer(NEW_DEFAULT, "No");
  EXPECT_TRUE(m_panel->validate());
  EXPECT_EQ(50.0, storedBrokerage());
}

TEST_F(SellSharesPanelTest, AllSharesHeldOnADayWithARecordCanBeSold) {
  choose(*m_panel, "ABC.AX");
  set("Date sold", "26/02/2026");
  set("Number sold", "100");
  EXPECT_TRUE(m_panel->validate());
  set("Number sold", "100.0001");
  expectRefused(NOT_ENOUGH_THEN, "Number sold");
  EXPECT_EQ("100.0001", shown("Number sold"));
}

TEST_F(SellSharesPanelTest, ASaleBeforeTheFirstRecordIsRefusedForAnyNumber) {
  choose(*m_panel, "ABC.AX");
  set("Date sold", "24/02/2026");
  set("Number sold", "0");
  expectRefused(NO_RECORD, "Date sold");
  EXPECT_EQ("24/02/2026", shown("Date sold"));
}

TEST_F(SellSharesPanelTest, SharesOfTheDaysBeforeAMergeCanBeSold) {
  user().recordAdjustment(u"ABC.AX", Date(2026, 3, 1), 5, true);
  user().capitalRecord().recordsChangedFrom(Date(2026, 3, 1));
  updateCapitalRecord(user());
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ("20.00", shown("Number sold"));
  set("Date sold", "28/02/2026");
  set("Number sold", "100");
  EXPECT_TRUE(m_panel->validate());
  set("Date sold", "01/03/2026");
  expectRefused(NOT_ENOUGH_THEN, "Number sold");
}

TEST_F(SellSharesPanelTest, SharesThatWereSoldSinceCannotBeSoldAgain) {
  choose(*m_panel, "ABC.AX");
  set("Date sold", "26/02/2026");
  parcel(u"ABC.AX").subElement(u"NumHeld").setValue(u"60.00"); // The capital record still says 100.
  set("Number sold", "60.0001");
  expectRefused(NOT_ENOUGH_NOW, "Number sold");
  set("Number sold", "60");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(SellSharesPanelTest, TinyAndNegativeNumbersAreRefused) {
  choose(*m_panel, "ABC.AX");
  set("Number sold", "0.00004");
  expectRefused(NO_NUMBER, "Number sold");
  set("Number sold", "-5");
  expectRefused(NO_NUMBER, "Number sold");
  set("Number sold", "0.0001");
  EXPECT_TRUE(m_panel->validate());
}

/// A holding of this many shares, merged three to one, is sold in the number that the form proposes. Nothing
/// may remain.
class MergedHoldingTest : public SellSharesPanelTest,
                          public ::testing::WithParamInterface<std::pair<double, const char*>> {};

TEST_P(MergedHoldingTest, IsSoldCompletelyAsProposed) {
  user().addBuyEvent(u"SPLIT.AX", {Date(2026, 3, 1), GetParam().first, 1.0, 0.0, String()});
  TallymoorInternet::Instance().setCachedPrice(u"SPLIT.AX", Date(2026, 3, 1), 1.0);
  TallymoorInternet::Instance().setCachedPrice(u"SPLIT.AX", Date(2026, 3, 2), 3.0);
  TallymoorInternet::Instance().setCachedPrice(u"SPLIT.AX", Date(2026, 3, 3), 3.0);
  user().recordAdjustment(u"SPLIT.AX", Date(2026, 3, 2), 3, true);
  user().capitalRecord().recordsChangedFrom(Date(2026, 3, 1));
  updateCapitalRecord(user());
  m_panel->reset(u"SPLIT.AX");
  EXPECT_EQ(GetParam().second, shown("Number sold"));
  ASSERT_TRUE(m_panel->validate());
  user().sellShares(u"SPLIT.AX", {Date(2026, 3, 3), m_panel->number(), 3.0, 0.0, String()}, true);
  EXPECT_EQ(nullptr, user().findHeldShare(u"SPLIT.AX"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, MergedHoldingTest,
                         ::testing::Values(std::pair(300.0, "100.00"), std::pair(100.0, "33.33"),
                                           std::pair(200.0, "66.6667")));

TEST_F(SellSharesPanelTest, AnotherBrokerageMayBecomeTheDefault) {
  choose(*m_panel, "ABC.AX");
  set("Brokerage paid", "29.95");
  answer(NEW_DEFAULT, "Yes");
  EXPECT_TRUE(m_panel->validate());
  EXPECT_EQ(29.95, storedBrokerage());
  EXPECT_TRUE(m_panel->validate()); // The same brokerage is not asked about again.
  set("Brokerage paid", "29.954");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(SellSharesPanelTest, NegativePricesAndBrokeragesAreRefused) {
  choose(*m_panel, "ABC.AX");
  set("Share price", "-5");
  expectRefused("The share price can't be less than zero.", "Share price");
  set("Share price", "2.5");
  set("Brokerage paid", "-9.95");
  expectRefused("The brokerage paid can't be less than zero.", "Brokerage paid");
  EXPECT_EQ(50.0, storedBrokerage());
}

TEST_F(SellSharesPanelTest, AnUnreadableDateIsAProblemAndHasTheFocus) {
  choose(*m_panel, "ABC.AX");
  set("Date sold", "yesterday");
  expectRefused("Date sold: \"yesterday\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.",
                "Date sold");
  EXPECT_EQ("yesterday", shown("Date sold"));
}

TEST_F(SellSharesPanelTest, ShowsTheNameTheTotalAndTheCashAfterwards) {
  StockNames::remember(u"ABC.AX", u"Alphabet Bricks");
  user().creditCash(Date(2026, 3, 1), 1000.0, CASH_EVENT_DEPOSIT, String());
  m_panel->reset();
  EXPECT_EQ("", shown("Stock name"));
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ("Alphabet Bricks", shown("Stock name"));
  EXPECT_EQ("200.00", shown("Total received")); // 100 at 2.50, less 50.00.
  EXPECT_EQ("1200.00", shown("Cash afterwards"));
  set("Number sold", "10");
  EXPECT_EQ("-25.00", shown("Total received")) << "the brokerage is more";
  EXPECT_EQ("975.00", shown("Cash afterwards"));
  set("Number sold", "40");
  EXPECT_EQ("50.00", shown("Total received"));
  EXPECT_EQ("1050.00", shown("Cash afterwards"));
}

TEST_F(SellSharesPanelTest, TheTotalIsWhatIsRecordedWhereAMergeHasLeftAFraction) {
  user().addBuyEvent(u"MRG.AX", {Date(2026, 1, 1), 100.0, 10.0, 0.0, String()});
  user().recordAdjustment(u"MRG.AX", Date(2026, 2, 1), 3, true);
  TallymoorInternet::Instance().setCachedPrice(u"MRG.AX", Date(), 31.0);
  m_panel->reset();
  choose(*m_panel, "MRG.AX");
  set("Share price", "31");
  set("Brokerage paid", "0");
  EXPECT_EQ("33.33", shown("Number sold"));
  EXPECT_EQ("1033.33", shown("Total received"));
  user().sellShares(u"MRG.AX", {Date(), 33.33, 31.0, 0.0, String()}, true);
  EXPECT_DOUBLE_EQ(1033.33, cashBalance(user().portfolio(), Date()));
}

TEST_F(SellSharesPanelTest, TheProposedPriceFollowsTheDate) {
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 2, 26), 2.25);
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ("2.5000", shown("Share price"));
  field(*m_panel, "Date sold").setFocus();
  set("Date sold", "26/2/26");
  field(*m_panel, "Number sold").setFocus();
  letEventsPass();
  EXPECT_EQ("2.2500", shown("Share price"));
  choose(*m_panel, "XYZ.AX");
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ("2.2500", shown("Share price")) << "also when the stock is chosen after the date";
}

TEST_F(SellSharesPanelTest, WithoutAPriceOfTheDayTheLastKnownOneIsProposed) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.setCachedPrice(u"GAP.AX", Date(2026, 2, 26), 12.5);
  gateway.setCachedPrice(u"GAP.AX", Date(2026, 2, 24), 11.0);
  user().addBuyEvent(u"GAP.AX", {Date(2026, 2, 24), 30.0, 10.0, 0.0, String()});
  m_panel->reset(u"GAP.AX");
  EXPECT_EQ("12.5000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, "last known, of 26/02/2026"));
  m_panel->reset();
  EXPECT_FALSE(shows(*m_panel, "last known, of 26/02/2026"));
  choose(*m_panel, "GAP.AX");
  EXPECT_EQ("12.5000", shown("Share price")) << "chosen from the list as well";
  EXPECT_TRUE(shows(*m_panel, "last known, of 26/02/2026"));
  field(*m_panel, "Date sold").setFocus();
  set("Date sold", "25/2/26");
  field(*m_panel, "Number sold").setFocus();
  letEventsPass();
  EXPECT_EQ("11.0000", shown("Share price")) << "never one of a later day";
  EXPECT_TRUE(shows(*m_panel, "last known, of 24/02/2026"));
  field(*m_panel, "Date sold").setFocus();
  set("Date sold", "26/2/26");
  field(*m_panel, "Number sold").setFocus();
  letEventsPass();
  EXPECT_EQ("12.5000", shown("Share price"));
  EXPECT_FALSE(shows(*m_panel, "last known, of 26/02/2026")) << "it is the day's own";
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::History).empty());
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::Quote).empty());
}

TEST_F(SellSharesPanelTest, TheLastKnownPriceIsInSharesOfTheFormsDay) {
  TallymoorInternet::Instance().setCachedPrice(u"GAP.AX", Date(2026, 2, 26), 12.5);
  user().addBuyEvent(u"GAP.AX", {Date(2026, 2, 26), 30.0, 10.0, 0.0, String()});
  user().recordAdjustment(u"GAP.AX", Date(2026, 3, 1), 5, false);
  m_panel->reset(u"GAP.AX");
  EXPECT_EQ("150.00", shown("Number sold"));
  EXPECT_EQ("2.5000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, "last known, of 26/02/2026"));
}

TEST_F(SellSharesPanelTest, APriceFarFromThatOfTheDayIsDoubted) {
  choose(*m_panel, "ABC.AX");
  set("Share price", "25");
  answer("The price of 25.00 is far from that of ABC.AX on 03/03/2026, which was 2.50.\nDo you want to "
         "record it "
         "all the same?",
         "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_TRUE(hasFocus("Share price"));
  set("Share price", "0");
  answer("Do you really want to record a sell price of $0.00?", "Yes");
  EXPECT_TRUE(m_panel->validate()) << "nothing more is asked about a price of nothing";
}

// The date button

TEST_F(SellSharesPanelTest, TheDateButtonFillsTheField) {
  set("Date sold", "16/02/2026");
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2026, 2, 16), find<FXCalendar>(form)->date());
    press(form, "18");
    press(form, "OK");
  });
  press(*m_panel, "Choose a date");
  EXPECT_EQ(Date(2026, 2, 18), m_panel->date());
}

TEST_F(SellSharesPanelTest, AFailureOfTheDateButtonIsReported) {
  Platform::setInstance(std::make_unique<BrokenPlatform>());
  answer("SellSharesPanel::onChooseDate failed. Exception : no form for dates", "OK");
  press(*m_panel, "Choose a date");
}

TEST_F(SellSharesPanelTest, FieldsLineUp) {
  FXint right = 0;
  for (const char* label : {"Number sold", "Share price", "Brokerage paid", "Date sold"}) {
    EXPECT_EQ(codes().getX(), field(*m_panel, label).getX()) << label;
    right = field(*m_panel, label).getX() + field(*m_panel, label).getWidth();
  }
  EXPECT_EQ(right, codes().getX() + codes().getWidth());
}

} // namespace
} // namespace Tallymoor
