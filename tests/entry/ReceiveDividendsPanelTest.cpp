#include "entry/ReceiveDividendsPanel.h"
#include "BrokenPlatform.h"
#include "PortfolioFormTest.h"
#include "entry/StockChoice.h"
#include "foundation/Exception.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/RunTimeSettings.h"
#include "market/StockNames.h"
#include "widgets/FXCalendar.h"
#include "widgets/NumberSpinner.h"

namespace Tallymoor {
namespace {

constexpr const char* NO_CODE = "You must select the share code";
constexpr const char* FUTURE_DATE = "You can't specify a date in the future.";
constexpr const char* NO_HELD = "You must select the number of shares the dividend was given for";
constexpr const char* NO_RATE = "You must record the dividend rate";
constexpr const char* NO_COUNTRY = "You must enter the country of origin of the foreign dividend.";
constexpr const char* COUNTRY_PROMPT = "<enter country of origin>";

/// A panel whose fields of the new shares can be made to throw.
class BreakablePanel : public ReceiveDividendsPanel {
public:
  using ReceiveDividendsPanel::ReceiveDividendsPanel;
  bool broken = false;

protected:
  void enablePaymentFields(bool reinvested) override {
    if (broken)
      throw Exception(u"broken fields");
    ReceiveDividendsPanel::enablePaymentFields(reinvested);
  }
};

class ReceiveDividendsPanelTest : public PortfolioFormTest {
protected:
  void SetUp() override {
    PortfolioFormTest::SetUp();
    m_panel = new BreakablePanel(mainWindow().contentFrame(), &user());
    m_panel->create();
    mainWindow().recalc();
    letEventsPass();
  }
  void set(const std::string& label, const std::string& text) { type(field(*m_panel, label), text); }
  std::string shown(const std::string& label) { return field(*m_panel, label).getText().text(); }
  NumberSpinner& spinner() { return *find<NumberSpinner>(*m_panel); }
  FXComboBox& countries() { return *findAll<FormComboBox>(*m_panel).at(1); }
  std::string countryShown() { return countries().getText().text(); }
  void check(bool foreign) {
    auto& box = dynamic_cast<FXCheckButton&>(button(*m_panel, "Foreign Div"));
    box.setCheck(foreign, TRUE);
  }
  void choosePayment(const std::string& label) {
    dynamic_cast<FXRadioButton&>(button(*m_panel, label)).setCheck(TRUE, TRUE);
  }
  void expectRefused(const char* message, FXWindow& atFault) {
    answer(message, "OK");
    EXPECT_FALSE(m_panel->validate());
    EXPECT_EQ(&atFault, focused(*m_panel));
  }
  bool labelEnabled(const std::string& label) {
    for (FXLabel* each : findAll<FXLabel>(*m_panel))
      if (each->getText() == label.c_str())
        return each->isEnabled();
    throw std::runtime_error("no label " + label);
  }

  BreakablePanel* m_panel = nullptr;
};

TEST_F(ReceiveDividendsPanelTest, BeginsWithItsInitialValues) {
  EXPECT_EQ(String(u"Receive a dividend"), m_panel->title());
  EXPECT_EQ("<select stock code>", shown("Stock Code"));
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ("0.00", shown("On Shares Held"));
  EXPECT_EQ("0.000000", shown("Dividend Rate"));
  EXPECT_EQ(100, m_panel->percentFranked());
  EXPECT_EQ("0.00", shown("Value"));
  EXPECT_EQ("0.00", shown("Franking Credit"));
  EXPECT_EQ("03/03/2026", shown("Date Received"));
  EXPECT_FALSE(m_panel->isForeign());
  EXPECT_EQ(COUNTRY_PROMPT, countryShown());
  EXPECT_EQ(String(), m_panel->country());
  EXPECT_EQ("0.00", shown("Withholding Tax"));
  EXPECT_FALSE(m_panel->isReinvested());
  EXPECT_FALSE(field(*m_panel, "Value").isEditable());
  EXPECT_FALSE(field(*m_panel, "Franking Credit").isEditable());
  EXPECT_EQ((std::vector<std::string>{"<select stock code>", "ABC.AX", "XYZ.AX"}),
            entries(*find<StockChoice>(*m_panel)));
}

TEST_F(ReceiveDividendsPanelTest, ChoosingAStockFillsTheNumberHeldAndTheValue) {
  set("Dividend Rate", "0.1");
  choose(*m_panel, "ABC.AX");
  EXPECT_EQ(String(u"ABC.AX"), m_panel->code());
  EXPECT_EQ("100.00", shown("On Shares Held"));
  EXPECT_EQ("10.00", shown("Value"));
  choose(*m_panel, "<select stock code>");
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ("0.00", shown("On Shares Held"));
}

TEST_F(ReceiveDividendsPanelTest, ACodePassedInIsChosen) {
  m_panel->reset(u"XYZ.AX");
  EXPECT_EQ(String(u"XYZ.AX"), m_panel->code());
  EXPECT_EQ(50.0, m_panel->numHeld());
  EXPECT_EQ(&field(*m_panel, "Dividend Rate"), m_panel->firstField());
}

TEST_F(ReceiveDividendsPanelTest, ValueAndCreditFollowTheNumbers) {
  set("On Shares Held", "1,000");
  set("Dividend Rate", "0.10");
  EXPECT_DOUBLE_EQ(100.0, m_panel->value());
  EXPECT_DOUBLE_EQ(42.857142857142857, m_panel->frankingCredit());
  EXPECT_EQ("100.00", shown("Value"));
  EXPECT_EQ("42.86", shown("Franking Credit"));
  type(*spinner().field(), "50");
  EXPECT_EQ("21.43", shown("Franking Credit"));
  type(*spinner().field(), "250"); // Not more than all.
  EXPECT_EQ(100, m_panel->percentFranked());
}

TEST_F(ReceiveDividendsPanelTest, TheCashAfterwardsFollowsWhatIsPaidInCash) {
  user().creditCash(Date(2026, 2, 27), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  m_panel->reset(u"ABC.AX");
  EXPECT_EQ("1000.00", shown("Cash afterwards"));
  EXPECT_FALSE(field(*m_panel, "Cash afterwards").isEditable());
  set("Dividend Rate", "0.5");
  EXPECT_EQ("1050.00", shown("Cash afterwards"));
  set("Withholding Tax", "7"); // Only recorded.
  EXPECT_EQ("1050.00", shown("Cash afterwards"));
  choosePayment("Dividend reinvestment");
  EXPECT_EQ("1000.00", shown("Cash afterwards"));
  choosePayment("Paid in cash");
  EXPECT_EQ("1050.00", shown("Cash afterwards"));
}

TEST_F(ReceiveDividendsPanelTest, APercentageAboveAHundredIsRefusedAndNotKeptForTheNextForm) {
  m_panel->reset(u"ABC.AX");
  set("On Shares Held", "100");
  set("Dividend Rate", "0.10");
  for (const char* typed : {"250", "-5", "101"}) {
    type(*spinner().field(), typed);
    expectRefused("The percentage franked must be from 0 to 100.", *spinner().field());
    EXPECT_STREQ(typed, spinner().field()->getText().text());
  }
  m_panel->reset();
  EXPECT_STREQ("100", spinner().field()->getText().text());
}

TEST_F(ReceiveDividendsPanelTest, TheArrowsOfThePercentageCount) {
  set("On Shares Held", "1000");
  set("Dividend Rate", "0.10");
  spinner().decrement(TRUE);
  EXPECT_EQ(99, m_panel->percentFranked());
  EXPECT_EQ("42.43", shown("Franking Credit"));
}

TEST_F(ReceiveDividendsPanelTest, ADividendFromAbroadHasItsCountry) {
  EXPECT_FALSE(countries().isEnabled());
  check(true);
  EXPECT_TRUE(countries().isEnabled());
  EXPECT_EQ(String(), m_panel->country()); // The prompt is not a country.
  auto& text = *find<FXTextField>(countries());
  EXPECT_EQ(&text, focused(*m_panel));
  type(text, " New Zealand ");
  EXPECT_EQ(String(u"New Zealand"), m_panel->country());
  set("Withholding Tax", "5");
  EXPECT_EQ(5.0, m_panel->withholdingTax());
}

TEST_F(ReceiveDividendsPanelTest, TurningForeignOffRestoresTheCountryPrompt) {
  check(true);
  type(*find<FXTextField>(countries()), "Fiji");
  set("Dividend Rate", "0.2"); // A number typed meanwhile clears the country.
  EXPECT_EQ(String(u"Fiji"), m_panel->country());
  check(false);
  EXPECT_EQ(COUNTRY_PROMPT, countryShown());
  EXPECT_EQ(String(), m_panel->country());
  EXPECT_FALSE(countries().isEnabled());
}

TEST_F(ReceiveDividendsPanelTest, OffersTheCountriesThatItKnows) {
  TestProfile::writeFile(profile().configFolder() + u"CountryConfig.xml",
                         "<?xml version=\"1.0\"?>\n<CountryOptions version=\"1\">"
                         "<CountryOption Name=\"Australia\" FinYearStart=\"1/7/2000\"/></CountryOptions>");
  user().receiveDividend({u"ABC.AX", Date(2026, 3, 1), 100.0, 0.1, 0, 0.0, 0.0, u"Fiji", 1.0});
  user().receiveDividend({u"ABC.AX", Date(2026, 3, 2), 100.0, 0.1, 0, 0.0, 0.0, String(), 0.0});
  m_panel->reset();
  EXPECT_EQ((std::vector<std::string>{"Australia", "Fiji"}), entries(countries()));
}

TEST_F(ReceiveDividendsPanelTest, ReinvestmentHasItsFields) {
  for (const char* label : {"Shares received", "Share price"}) {
    EXPECT_FALSE(field(*m_panel, label).isEnabled()) << label;
    EXPECT_FALSE(labelEnabled(label)) << label;
  }
  choosePayment("Dividend reinvestment");
  EXPECT_TRUE(m_panel->isReinvested());
  for (const char* label : {"Shares received", "Share price"}) {
    EXPECT_TRUE(field(*m_panel, label).isEnabled()) << label;
    EXPECT_TRUE(labelEnabled(label)) << label;
  }
  set("Shares received", "12.5");
  set("Share price", "3.2501");
  EXPECT_EQ(12.5, m_panel->sharesReceived());
  EXPECT_EQ(3.2501, m_panel->sharePrice());
}

TEST_F(ReceiveDividendsPanelTest, GoingBackToCashZeroesTheTwoFields) {
  choosePayment("Dividend reinvestment");
  set("Shares received", "12.5");
  set("Share price", "3.2501");
  choosePayment("Paid in cash");
  EXPECT_FALSE(m_panel->isReinvested());
  EXPECT_FALSE(dynamic_cast<FXRadioButton&>(button(*m_panel, "Dividend reinvestment")).getCheck());
  EXPECT_EQ(0.0, m_panel->sharesReceived());
  EXPECT_EQ(0.0, m_panel->sharePrice());
  for (const char* label : {"Shares received", "Share price"}) {
    EXPECT_FALSE(field(*m_panel, label).isEnabled()) << label;
    EXPECT_FALSE(labelEnabled(label)) << label;
  }
}

TEST_F(ReceiveDividendsPanelTest, FailuresOfThePaymentAreReported) {
  m_panel->broken = true;
  answer("ReceiveDividendsPanel::onRadioDRP failed. Exception : broken fields", "OK");
  choosePayment("Dividend reinvestment");
  answer("ReceiveDividendsPanel::onRadioCash failed. Exception : broken fields", "OK");
  choosePayment("Paid in cash");
}

TEST_F(ReceiveDividendsPanelTest, AFailureOfTheListIsReported) {
  spoilParcel(u"ABC.AX");
  whenModal("ReceiveDividendsPanel::onListChanged failed. ", [this](FXWindow& box) { press(box, "OK"); });
  choose(*m_panel, "ABC.AX");
}

TEST_F(ReceiveDividendsPanelTest, FrankingIsShownInAustraliaOnly) {
  EXPECT_TRUE(spinner().getParent()->shown());
  EXPECT_TRUE(field(*m_panel, "Franking Credit").getParent()->shown());
  CountryOfResidence::destroyInstance();
  Settings::Instance().writeString(u"Config", u"Country", u"New Zealand");
  m_panel->reset();
  EXPECT_EQ(0, m_panel->percentFranked());
  EXPECT_FALSE(spinner().getParent()->shown());
  EXPECT_FALSE(field(*m_panel, "Franking Credit").getParent()->shown());
  EXPECT_TRUE(field(*m_panel, "Value").getParent()->shown());
}

TEST_F(ReceiveDividendsPanelTest, ResetClearsTheTypedValues) {
  choose(*m_panel, "ABC.AX");
  set("Dividend Rate", "0.1");
  set("Withholding Tax", "5");
  set("Date Received", "01/03/2026");
  type(*spinner().field(), "30");
  check(true);
  type(*find<FXTextField>(countries()), "Fiji");
  choosePayment("Dividend reinvestment");
  m_panel->setPortfolio(nullptr);
  EXPECT_EQ(String(), m_panel->code());
  EXPECT_EQ(0.0, m_panel->numHeld());
  EXPECT_EQ(0.0, m_panel->rate());
  EXPECT_EQ(0.0, m_panel->withholdingTax());
  EXPECT_EQ(100, m_panel->percentFranked());
  EXPECT_EQ(Date(2026, 3, 3), m_panel->date());
  EXPECT_FALSE(m_panel->isForeign());
  EXPECT_EQ(COUNTRY_PROMPT, countryShown());
  EXPECT_FALSE(m_panel->isReinvested());
}

// The checks

TEST_F(ReceiveDividendsPanelTest, TheChecksComeInTheirOrder) {
  set("Date Received", "04/03/2026");
  check(true);
  expectRefused(NO_CODE, field(*m_panel, "Stock Code"));
  choose(*m_panel, "ABC.AX");
  set("On Shares Held", "0.00004");
  expectRefused(FUTURE_DATE, field(*m_panel, "Date Received"));
  set("Date Received", "03/03/2026");
  expectRefused(NO_HELD, field(*m_panel, "On Shares Held"));
  set("On Shares Held", "-100");
  expectRefused(NO_HELD, field(*m_panel, "On Shares Held"));
  set("On Shares Held", "100");
  set("Dividend Rate", "0.00004");
  expectRefused(NO_RATE, field(*m_panel, "Dividend Rate"));
  EXPECT_EQ("0.00004", shown("Dividend Rate"));
  set("Dividend Rate", "0.0001");
  auto& country = *find<FXTextField>(countries());
  expectRefused(NO_COUNTRY, country);
  type(country, "  ");
  expectRefused(NO_COUNTRY, country);
  type(country, "<somewhere");
  expectRefused(NO_COUNTRY, country);
  type(country, "Fiji");
  EXPECT_TRUE(m_panel->validate());
  check(false);
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(ReceiveDividendsPanelTest, AnUnreadableDateIsAProblem) {
  choose(*m_panel, "ABC.AX");
  set("Dividend Rate", "0.1");
  set("Date Received", "yesterday");
  expectRefused("Date Received: \"yesterday\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.",
                field(*m_panel, "Date Received"));
}

TEST_F(ReceiveDividendsPanelTest, AStockThatWasSoldAltogetherCanBeChosen) {
  StockNames::remember(u"XYZ.AX", u"Xylo Zinc");
  user().addBuyEvent(u"AAA.AX", {Date(2026, 2, 26), 70.0, 1.0, 0.0, String()});
  user().sellShares(u"AAA.AX", {Date(2026, 2, 27), 20.0, 2.0, 0.0, String()}, true);
  user().sellShares(u"AAA.AX", {Date(2026, 3, 2), 50.0, 2.0, 0.0, String()}, true);
  user().sellShares(u"XYZ.AX", {Date(2026, 3, 2), 10.0, 7.0, 0.0, String()}, true);
  m_panel->reset();
  EXPECT_EQ((std::vector<std::string>{"<select stock code>", "ABC.AX", "XYZ.AX", "AAA.AX"}),
            entries(*find<StockChoice>(*m_panel)));
  choose(*m_panel, "AAA.AX");
  EXPECT_EQ(50.0, m_panel->numHeld()) << "what was sold last";
  choose(*m_panel, "XYZ.AX");
  EXPECT_EQ(40.0, m_panel->numHeld()) << "what is still held";
  EXPECT_EQ("Xylo Zinc", shown("Stock name"));
}

TEST_F(ReceiveDividendsPanelTest, AReinvestmentNeedsShares) {
  choose(*m_panel, "ABC.AX");
  set("Dividend Rate", "0.1");
  choosePayment("Dividend reinvestment");
  expectRefused("You must enter the number of shares received.", field(*m_panel, "Shares received"));
  set("Shares received", "-3");
  expectRefused("You must enter the number of shares received.", field(*m_panel, "Shares received"));
  set("Shares received", "3");
  set("Share price", "-2");
  expectRefused("The share price can't be less than zero.", field(*m_panel, "Share price"));
  set("Share price", "0");
  answer("Do you really want to record a share price of $0.00?", "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Share price"), focused(*m_panel));
  set("Share price", "2");
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(ReceiveDividendsPanelTest, AReinvestmentsPriceFarFromThatOfTheDayIsDoubted) {
  choose(*m_panel, "ABC.AX");
  set("Dividend Rate", "0.1");
  choosePayment("Dividend reinvestment");
  set("Shares received", "3");
  set("Share price", "25");
  const char* doubt = "The price of 25.00 is far from that of ABC.AX on 03/03/2026, which was 2.50.\n"
                      "Do you want to record it all the same?";
  answer(doubt, "No");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Share price"), focused(*m_panel));
  answer(doubt, "Yes");
  EXPECT_TRUE(m_panel->validate());
  user().receiveDividend({u"ABC.AX", Date(2026, 3, 2), 100, 0.1, 0, 3, 25, String(), 0});
  m_panel->showDividend(user().portfolio().dividends()[0]);
  EXPECT_TRUE(m_panel->validate()) << "what was recorded is not doubted";
  m_panel->reset(u"ABC.AX");
  set("Dividend Rate", "0.1");
  choosePayment("Dividend reinvestment");
  set("Shares received", "3");
  set("Share price", "25");
  set("Date Received", "02/03/2026");
  whenModal("is far from that of ABC.AX on 02/03/2026", [this](FXWindow& box) { press(box, "No"); });
  EXPECT_FALSE(m_panel->validate()) << "a new entry is";
}

TEST_F(ReceiveDividendsPanelTest, ANegativeTaxIsRefused) {
  choose(*m_panel, "ABC.AX");
  set("Dividend Rate", "0.1");
  set("Withholding Tax", "-1");
  expectRefused("The withholding tax can't be less than zero.", field(*m_panel, "Withholding Tax"));
}

TEST_F(ReceiveDividendsPanelTest, AForeignDividendIsNotFrankedUnlessTyped) {
  EXPECT_EQ(100, m_panel->percentFranked());
  check(true);
  EXPECT_EQ(0, m_panel->percentFranked());
  EXPECT_EQ(0.0, m_panel->frankingCredit());
  check(false);
  EXPECT_EQ(100, m_panel->percentFranked());
  type(*spinner().field(), "30");
  check(true);
  EXPECT_EQ(30, m_panel->percentFranked()) << "what was typed stays";
  m_panel->reset();
  check(true);
  EXPECT_EQ(0, m_panel->percentFranked()) << "and is forgotten with the form";
}

// The date button

TEST_F(ReceiveDividendsPanelTest, TheDateButtonFillsTheField) {
  set("Date Received", "16/02/2026");
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2026, 2, 16), find<FXCalendar>(form)->date());
    press(form, "18");
    press(form, "OK");
  });
  press(*m_panel, "Choose a date");
  EXPECT_EQ(Date(2026, 2, 18), m_panel->date());
}

TEST_F(ReceiveDividendsPanelTest, AFailureOfTheDateButtonIsReported) {
  Platform::setInstance(std::make_unique<BrokenPlatform>());
  answer("ReceiveDividendsPanel::onChooseDate failed. Exception : no form for dates", "OK");
  press(*m_panel, "Choose a date");
}

TEST_F(ReceiveDividendsPanelTest, FieldsLineUp) {
  const FXint left = find<StockChoice>(*m_panel)->getX();
  for (const char* label : {"On Shares Held", "Dividend Rate", "Value", "Date Received", "Withholding Tax",
                            "Shares received", "Share price"})
    EXPECT_EQ(left, field(*m_panel, label).getX()) << label;
  EXPECT_EQ(left, spinner().getX());
  EXPECT_LT(left + spinner().getWidth(), field(*m_panel, "Franking Credit").getX()); // in the same row
  EXPECT_EQ(left, countries().getX());
  EXPECT_EQ(left, button(*m_panel, "Paid in cash").getX());
}

} // namespace
} // namespace Tallymoor
