#include "entry/BuySharesPanel.h"
#include "BrokenPlatform.h"
#include "FocusedWidget.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesDialog.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "widgets/CalendarDialog.h"
#include "widgets/DateField.h"
#include "widgets/FXCalendar.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {
namespace {

constexpr const char* FUTURE_DATE = "You can't specify a buy date in the future.";
constexpr const char* NO_NUMBER = "You must select the number of shares purchased.";
constexpr const char* NO_PRICE = "You must record the purchase price.";
constexpr const char* NO_BROKERAGE = "Are you sure there was no brokerage charged for this purchase?";
constexpr const char* NEW_DEFAULT = "Would you like to make this the default brokerage rate?";
constexpr const char* NO_CODE = "You must record the share code - click 'search' to help";
constexpr const char* UNCHECKED = "You have not checked the stock code by searching for the company.\n"
                                  "Are you sure you want to continue with this stock code?";

constexpr const char* NO_PRICE_KNOWN = "No price is known.";

class BuySharesPanelTest : public WindowTest {
protected:
  /// Offline, with prices for today and for two weeks ago.
  void proposeKnownPrices() {
    TallymoorInternet::Instance().goOffline();
    TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 3, 3), 12.0);
    TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 2, 16), 10.5);
    m_panel->reset(u"ABC.AX");
  }
  BuySharesPanelTest() {
    m_market.addListing(u"ABC.AX", u"Alphabet Bricks", u"Australia");
    m_market.setCurrentPrice(u"ABC.AX", 12.3456);
  }
  void SetUp() override {
    WindowTest::SetUp();
    m_panel = new BuySharesPanel(mainWindow().contentFrame());
    m_panel->create();
    letEventsPass();
  }
  /// A complete form except for the code search.
  void fill() {
    set("Stock code", "ABC.AX");
    set("Number bought", "100");
    set("Share price", "12.34");
  }
  void set(const std::string& label, const std::string& text) { type(field(*m_panel, label), text); }
  std::string shown(const std::string& label) { return field(*m_panel, label).getText().text(); }
  std::string statusText() { return find<FXStatusLine>(mainWindow())->getText().text(); }
  double storedBrokerage() { return Settings::Instance().readReal(u"Finance", u"Brokerage", 50.0); }
  void searchAndAccept() {
    whenModal("Stock Search", [this](FXWindow& form) { press(form, "OK"); });
    press(*m_panel, "Search for stock code");
  }

  MarketFixture m_market;
  GatewayScope m_gateway;
  BuySharesPanel* m_panel = nullptr;
};

TEST_F(BuySharesPanelTest, BeginsWithItsInitialValues) {
  EXPECT_EQ(String(u"Buy Shares"), m_panel->title());
  EXPECT_EQ(String(u"Specify the share code, date and buy price of a share purchase."),
            m_panel->description());
  EXPECT_EQ("", shown("Stock code"));
  EXPECT_EQ("", shown("Stock name"));
  EXPECT_EQ("0.00", shown("Number bought"));
  EXPECT_EQ("0.0000", shown("Share price"));
  EXPECT_EQ("50.00", shown("Brokerage paid"));
  EXPECT_EQ(Date(2026, 3, 3), m_panel->date());
  EXPECT_EQ(Date(2026, 3, 3).toString(DATE_DISPLAY_LOCAL).toUTF8(), shown("Date bought"));
  EXPECT_EQ(String(), m_panel->comments());
  EXPECT_TRUE(shows(*m_panel, "Purchase reasons, comments, indicators"));
  EXPECT_FALSE(field(*m_panel, "Stock name").isEditable());
  EXPECT_GE(find<FXText>(*m_panel)->getParent()->getWidth(), 400);
}

TEST_F(BuySharesPanelTest, TheDefaultBrokerageComesFromTheSettings) {
  Settings::Instance().writeReal(u"Finance", u"Brokerage", 19.95);
  m_panel->reset();
  EXPECT_EQ(19.95, m_panel->brokerage());
}

TEST_F(BuySharesPanelTest, ReturnsTheTypedValues) {
  fill();
  set("Stock code", "  ABC.AX ");
  set("Number bought", "1,234.50");
  set("Share price", "12.5 ");
  set("Brokerage paid", "9.99");
  set("Date bought", "28/02/2026");
  find<FXText>(*m_panel)->setText("cheap &\nsound");
  EXPECT_EQ(String(u"ABC.AX"), m_panel->code());
  EXPECT_EQ(1234.5, m_panel->number());
  EXPECT_EQ(12.5, m_panel->price());
  EXPECT_EQ(9.99, m_panel->brokerage());
  EXPECT_EQ(Date(2026, 2, 28), m_panel->date());
  EXPECT_EQ(String(u"cheap &\nsound"), m_panel->comments());
}

TEST_F(BuySharesPanelTest, ResetClearsTheTypedValues) {
  fill();
  set("Brokerage paid", "9.99");
  set("Date bought", "28/02/2026");
  find<FXText>(*m_panel)->setText("cheap");
  m_panel->reset(u"XYZ.AX");
  EXPECT_EQ(String(u"XYZ.AX"), m_panel->code());
  EXPECT_EQ(0.0, m_panel->number());
  EXPECT_EQ(0.0, m_panel->price());
  EXPECT_EQ(50.0, m_panel->brokerage());
  EXPECT_EQ(Date(2026, 3, 3), m_panel->date());
  EXPECT_EQ(String(), m_panel->comments());
}

TEST_F(BuySharesPanelTest, ACodePassedInFillsItsKnownPrice) {
  TallymoorInternet::Instance().setCachedPrice(u"XYZ.AX", Date(2026, 3, 3), 4.5);
  m_panel->reset(u"XYZ.AX");
  EXPECT_EQ("4.5000", shown("Share price"));
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::Quote).empty());
}

// The checks, in order

TEST_F(BuySharesPanelTest, UnderAViewDateACodePassedInBringsThePriceOfThatDay) {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.addCode(u"ABC.AX");
  updater.setCurrentPrice(u"ABC.AX", 12.0);
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 1, 15), 9.5);
  Date::setFixedDate(Date(2026, 1, 15));
  m_panel->reset(u"ABC.AX");
  EXPECT_DOUBLE_EQ(9.5, m_panel->price());
  Date::clearFixedDate();
}

TEST_F(BuySharesPanelTest, TheChecksComeInTheirOrder) {
  set("Date bought", "04/03/2026");
  set("Brokerage paid", "0");
  answer(FUTURE_DATE, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Date bought", "03/03/2026");
  answer(NO_NUMBER, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Number bought", "100");
  answer(NO_PRICE, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Share price", "12.34");
  answer(NO_BROKERAGE, "No");
  EXPECT_FALSE(m_panel->validate());
  set("Brokerage paid", "50.00");
  answer(NO_CODE, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Stock code", "ABC.AX");
  answer(UNCHECKED, "No");
  EXPECT_FALSE(m_panel->validate());
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, AFractionBelowFourDecimalsCountsAsZero) {
  fill();
  set("Number bought", "0.00001");
  answer(NO_NUMBER, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Number bought", "0.0001");
  set("Share price", "0.00004");
  answer(NO_PRICE, "OK");
  EXPECT_FALSE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, NegativeNumbersAndPricesAreRefused) {
  fill();
  set("Number bought", "-100");
  answer(NO_NUMBER, "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Number bought", "100");
  set("Share price", "-5");
  answer(NO_PRICE, "OK");
  EXPECT_FALSE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, NoBrokerageAsksAndThenAsksForTheDefault) {
  fill();
  set("Brokerage paid", "0");
  answer(NO_BROKERAGE, "Yes");
  answer(NEW_DEFAULT, "No");
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
  EXPECT_EQ(50.0, storedBrokerage());
}

TEST_F(BuySharesPanelTest, AnotherBrokerageMayBecomeTheDefault) {
  fill();
  set("Brokerage paid", "29.95");
  answer(NEW_DEFAULT, "Yes");
  answer(UNCHECKED, "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(29.95, storedBrokerage());
  answer(UNCHECKED, "Yes"); // The same brokerage is not asked about again.
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, BrokeragesThatReadTheSameAtTwoPlacesAreTheSame) {
  fill();
  set("Brokerage paid", "50.004");
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, AnUnreadableDateIsNamed) {
  fill();
  set("Date bought", "29/02/2025");
  answer("Date bought: \"29/02/2025\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Date bought"), focused(*m_panel));
  EXPECT_EQ("29/02/2025", shown("Date bought"));
}

TEST_F(BuySharesPanelTest, DatesAreTypedAsPeopleTypeThem) {
  for (const char* text : {"1/2/2026", "01/02/26", "2026-02-01", "1 Feb 2026", "1.2.2026"}) {
    set("Date bought", text);
    EXPECT_EQ(Date(2026, 2, 1), m_panel->date()) << text;
  }
}

TEST_F(BuySharesPanelTest, ANegativeBrokerageIsRefused) {
  fill();
  set("Brokerage paid", "-5");
  answer("The brokerage paid can't be less than zero.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Brokerage paid"), focused(*m_panel));
  EXPECT_EQ(50.0, storedBrokerage());
}

TEST_F(BuySharesPanelTest, TodayIsTheViewDateWhileOneIsSet) {
  Date::setFixedDate(Date(2026, 1, 15));
  m_panel->reset();
  fill();
  EXPECT_EQ(Date(2026, 1, 15), m_panel->date());
  set("Date bought", "16/01/2026");
  answer(FUTURE_DATE, "OK");
  EXPECT_FALSE(m_panel->validate());
  Date::clearFixedDate();
}

TEST_F(BuySharesPanelTest, AnotherMarketIsAskedAboutInTheForm) {
  XMLSharePortfolio records;
  SharePortfolioUser user(records, gatewayPrices());
  user.addBuyEvent(u"OLD.AX", {Date(2026, 1, 5), 10.0, 1.0, 0.0, String()});
  m_panel->setPortfolio(&user);
  fill();
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
  set("Stock code", "ABC.L");
  answer(UNCHECKED, "Yes");
  whenModal("You are about to buy stock from a different market to\nexisting stock held in this portfolio.",
            [this](FXWindow& box) { press(box, "No"); });
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Stock code"), focused(*m_panel));
  answer(UNCHECKED, "Yes");
  whenModal("You are about to buy stock from a different market to\nexisting stock held in this portfolio.",
            [this](FXWindow& box) { press(box, "Yes"); });
  EXPECT_TRUE(m_panel->validate());
  m_panel->setPortfolio(nullptr);
}

// Total and cash

TEST_F(BuySharesPanelTest, ShowsTheTotalAndTheCashThatRemains) {
  EXPECT_FALSE(field(*m_panel, "Cash afterwards").getParent()->shown()) << "no portfolio, no cash";
  XMLSharePortfolio records;
  SharePortfolioUser user(records, gatewayPrices());
  user.creditCash(Date(2026, 1, 5), 2000.0, CASH_EVENT_DEPOSIT, String());
  user.debitCash(Date(2026, 1, 6), 100.0, CASH_EVENT_DEBIT, String());
  m_panel->setPortfolio(&user);
  EXPECT_TRUE(field(*m_panel, "Cash afterwards").getParent()->shown());
  EXPECT_EQ("50.00", shown("Total to pay"));
  fill();
  EXPECT_EQ("1284.00", shown("Total to pay"));
  EXPECT_EQ("616.00", shown("Cash afterwards"));
  set("Brokerage paid", "0");
  EXPECT_EQ("1234.00", shown("Total to pay"));
  set("Number bought", "1000");
  EXPECT_EQ("-10440.00", shown("Cash afterwards"));
  EXPECT_FALSE(field(*m_panel, "Total to pay").isEditable());
  m_panel->setPaidFromCash(false);
  EXPECT_FALSE(field(*m_panel, "Cash afterwards").getParent()->shown());
  m_panel->setPortfolio(nullptr);
}

// The price of the day

TEST_F(BuySharesPanelTest, TheProposedPriceFollowsTheDate) {
  proposeKnownPrices();
  set("Number bought", "100");
  EXPECT_EQ("12.0000", shown("Share price"));
  FXTextField& date = field(*m_panel, "Date bought");
  date.setFocus();
  set("Date bought", "16 Feb 26");
  field(*m_panel, "Number bought").setFocus();
  letEventsPass();
  EXPECT_EQ("16/02/2026", shown("Date bought"));
  EXPECT_EQ("10.5000", shown("Share price"));
  EXPECT_EQ("1100.00", shown("Total to pay"));
  whenModal("Choose the date", [&](FXWindow& form) {
    dynamic_cast<CalendarDialog&>(form).calendar()->setDate(Date(2026, 3, 3));
    dynamic_cast<CalendarDialog&>(form).typed()->setDate(Date(2026, 3, 3));
    press(form, "OK");
  });
  press(*m_panel, "Choose a date");
  EXPECT_EQ("12.0000", shown("Share price"));
  set("Share price", "11.9");
  date.setFocus();
  set("Date bought", "16/02/2026");
  field(*m_panel, "Number bought").setFocus();
  letEventsPass();
  EXPECT_EQ("11.9", shown("Share price")) << "a typed price is the user's";
}

TEST_F(BuySharesPanelTest, APriceThatChangesAtOkIsAskedAbout) {
  proposeKnownPrices();
  set("Number bought", "100");
  set("Date bought", "16/02/2026");
  answer("The price of ABC.AX on 16/02/2026 was 10.50.\nDo you want to record this price?", "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ("10.5000", shown("Share price"));
  EXPECT_EQ(&field(*m_panel, "Share price"), focused(*m_panel));
  answer(UNCHECKED, "Yes"); // The price is set now and not asked about again.
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, ALastKnownPriceThatChangesAtOkIsAskedAboutWithItsDay) {
  proposeKnownPrices();
  set("Number bought", "100");
  set("Date bought", "20/02/2026");
  answer("No price of ABC.AX on 20/02/2026 is known. The last one before, of 16/02/2026, was 10.50.\n"
         "Do you want to record this price?",
         "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ("10.5000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, "last known, of 16/02/2026"));
  set("Share price", "10.4");
  EXPECT_FALSE(shows(*m_panel, "last known, of 16/02/2026")) << "the user's own";
}

TEST_F(BuySharesPanelTest, AStockFoundWithoutAPriceOfTheDayHasTheLastKnownOne) {
  m_market.addListing(u"NOQ.AX", u"No Quotes", u"Australia");
  TallymoorInternet::Instance().setCachedPrice(u"NOQ.AX", Date(2026, 2, 16), 10.5);
  set("Stock code", "NOQ");
  searchAndAccept();
  EXPECT_EQ("10.5000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, "last known, of 16/02/2026"));
  m_panel->reset(u"NOQ.AX");
  EXPECT_EQ("10.5000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, "last known, of 16/02/2026"));
}

TEST_F(BuySharesPanelTest, APriceFarFromThatOfTheDayIsDoubted) {
  TallymoorInternet::Instance().goOffline();
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 3, 3), 12.0);
  fill();
  for (const char* price : {"12", "15", "9.6"}) {
    set("Share price", price);
    answer(UNCHECKED, "Yes");
    EXPECT_TRUE(m_panel->validate()) << price;
  }
  for (const char* price : {"15.01", "9.59", "1.2", "1200"}) {
    set("Share price", price);
    answer(UNCHECKED, "Yes");
    whenModal("is far from that of ABC.AX on 03/03/2026, which was 12.00.",
              [this](FXWindow& box) { press(box, "No"); });
    EXPECT_FALSE(m_panel->validate()) << price;
    EXPECT_EQ(&field(*m_panel, "Share price"), focused(*m_panel));
  }
  answer(UNCHECKED, "Yes");
  whenModal("The price of 1200.00 is far from that of ABC.AX on 03/03/2026, which was 12.00.",
            [this](FXWindow& box) { press(box, "Yes"); });
  EXPECT_TRUE(m_panel->validate());
  set("Date bought", "20/02/2026"); // No price is known for that day.
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, ARecordedPriceIsNotDoubtedAgain) {
  TallymoorInternet::Instance().goOffline();
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 2, 16), 12.0);
  m_panel->showPurchase(u"ABC.AX", {Date(2026, 2, 16), 100.0, 1.2, 50.0, String()});
  EXPECT_TRUE(m_panel->validate());
  set("Share price", "1.3");
  whenModal("The price of 1.30 is far from that of ABC.AX", [this](FXWindow& box) { press(box, "Yes"); });
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, TheNameOfAKnownCodeIsThereAtOnce) {
  StockNames::remember(u"KNOWN.AX", u"Known Quantities");
  m_panel->reset(u"KNOWN.AX");
  EXPECT_EQ("Known Quantities", shown("Stock name"));
  set("Stock code", "KNOWN");
  EXPECT_EQ("", shown("Stock name"));
  fill();
  set("Stock code", "KNOWN.AX");
  EXPECT_EQ("Known Quantities", shown("Stock name"));
  EXPECT_TRUE(m_panel->validate()) << "what was found before is not asked about";
}

// The buttons

TEST_F(BuySharesPanelTest, TheDateButtonFillsTheField) {
  set("Date bought", "16/02/2026");
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2026, 2, 16), find<FXCalendar>(form)->date());
    press(form, "18");
    press(form, "OK");
  });
  press(*m_panel, "Choose a date");
  EXPECT_EQ(Date(2026, 2, 18), m_panel->date());
}

TEST_F(BuySharesPanelTest, AFailureOfTheDateButtonIsReported) {
  Platform::setInstance(std::make_unique<BrokenPlatform>());
  answer("BuySharesPanel::onChooseDate failed. Exception : no form for dates", "OK");
  press(*m_panel, "Choose a date");
}

TEST_F(BuySharesPanelTest, ASearchNeedsACode) {
  answer("You must enter a code to search for.", "OK");
  press(*m_panel, "Search for stock code");
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::Search).empty());
}

TEST_F(BuySharesPanelTest, ASearchFillsCodeNameAndPrice) {
  fill();
  set("Stock code", "alphabet");
  searchAndAccept();
  EXPECT_EQ(String(u"ABC.AX"), m_panel->code());
  EXPECT_EQ(String(u"Alphabet Bricks in Australia"), m_panel->name());
  EXPECT_EQ("12.3456", shown("Share price"));
  EXPECT_TRUE(m_panel->validate()); // Nothing is asked.
}

TEST_F(BuySharesPanelTest, ACodeTypedAfterASearchHasNotBeenSearchedFor) {
  fill();
  searchAndAccept();
  set("Stock code", "XYZ.AX");
  set("Share price", "2.50");
  EXPECT_EQ(String(), m_panel->name());
  answer(UNCHECKED, "Yes");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(BuySharesPanelTest, ACancelledOrEmptySearchChangesNothing) {
  fill();
  whenModal("Stock Search", [&](FXWindow& form) { press(form, "Cancel"); });
  press(*m_panel, "Search for stock code");
  EXPECT_EQ(String(), m_panel->name());
  set("Stock code", "nobody");
  searchAndAccept();
  EXPECT_EQ(String(u"nobody"), m_panel->code());
  EXPECT_EQ(12.34, m_panel->price());
}

TEST_F(BuySharesPanelTest, TheSearchDialogRunsWithTheBigMutexReleased) {
  fill();
  bool held = true;
  whenModal("Stock Search", [&](FXWindow& form) {
    held = bigMutex().heldByThisThread();
    press(form, "Cancel");
  });
  press(*m_panel, "Search for stock code");
  EXPECT_FALSE(held);
}

TEST_F(BuySharesPanelTest, AnOfflineSearchIsReported) {
  fill();
  TallymoorInternet::Instance().goOffline();
  answer("BuySharesPanel::onSearchCode failed. HTTPException : TallymoorInternet::stockSearch - internet "
         "offline.",
         "OK");
  press(*m_panel, "Search for stock code");
  EXPECT_EQ(String(u"ABC.AX"), m_panel->code());
}

TEST_F(BuySharesPanelTest, APriceThatCannotBeFetchedIsToldBesideItAndTheStockStays) {
  m_market.addListing(u"NOQ.AX", u"No Quotes", u"Australia");
  set("Stock code", "NOQ");
  EXPECT_FALSE(shows(*m_panel, NO_PRICE_KNOWN)) << "not searched yet";
  searchAndAccept();
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(String(u"NOQ.AX"), m_panel->code());
  EXPECT_EQ(String(u"No Quotes in Australia"), m_panel->name());
  EXPECT_EQ("0.0000", shown("Share price"));
  EXPECT_TRUE(shows(*m_panel, NO_PRICE_KNOWN));
  EXPECT_TRUE(statusText().starts_with("No price for NOQ.AX: HTMLException : ")) << statusText();
  set("Share price", "2.5");
  EXPECT_FALSE(shows(*m_panel, NO_PRICE_KNOWN));
}

TEST_F(BuySharesPanelTest, APriceThatWasTypedStaysWhenTheStockFoundHasNone) {
  m_market.addListing(u"NOQ.AX", u"No Quotes", u"Australia");
  fill();
  set("Stock code", "NOQ");
  searchAndAccept();
  EXPECT_EQ("12.34", shown("Share price"));
  EXPECT_FALSE(shows(*m_panel, NO_PRICE_KNOWN));
}

TEST_F(BuySharesPanelTest, APriceProposedForOneStockIsNotKeptForAnother) {
  set("Stock code", "alphabet");
  searchAndAccept();
  EXPECT_EQ("12.3456", shown("Share price"));
  set("Stock code", "XYZ.AX");
  EXPECT_EQ("0.0000", shown("Share price"));
  EXPECT_FALSE(shows(*m_panel, NO_PRICE_KNOWN));
  set("Share price", "3");
  set("Stock code", "XYZ.L");
  EXPECT_EQ("3", shown("Share price")) << "typed, and not proposed";
}

TEST_F(BuySharesPanelTest, ALongNameUsesTheRestOfItsRow) {
  mainWindow().recalc();
  letEventsPass();
  const FXTextField& name = field(*m_panel, "Stock name");
  EXPECT_GT(name.getWidth(), 2 * field(*m_panel, "Number bought").getWidth() - 50);
  EXPECT_EQ(name.getParent()->getWidth(), name.getX() + name.getWidth());
}

TEST_F(BuySharesPanelTest, FieldsLineUp) {
  const FXint left = field(*m_panel, "Stock code").getX();
  for (const char* label : {"Stock name", "Number bought", "Share price", "Brokerage paid", "Date bought"})
    EXPECT_EQ(left, field(*m_panel, label).getX()) << label;
}

} // namespace
} // namespace Tallymoor
