#pragma once
#include "books/SharePortfolioUser.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/StartupWizard.h"
#include "foundation/FileReplacement.h"
#include "foundation/Settings.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "widgets/GUIPanel.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace Tallymoor {

/// The start-up wizard in a real window with its own records, for an offline user in Australia on 3 March
/// 2026. Prices that the user has not typed are in the cache.
class StartupWizardTest : public WindowTest {
protected:
  StartupWizardTest() {
    CountryOfResidence::destroyInstance();
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    TallymoorInternet::Instance().goOffline();
  }
  ~StartupWizardTest() override { CountryOfResidence::destroyInstance(); }

  void SetUp() override {
    WindowTest::SetUp();
    for (Date day(2026, 1, 1); day <= Date(); day.addDays(1))
      for (const char16_t* code : {u"ABC.AX", u"XYZ.AX", u"OLD.AX"})
        TallymoorInternet::Instance().setCachedPrice(code, day, 5.0);
    openWizard();
  }
  void TearDown() override {
    m_wizard.reset();
    WindowTest::TearDown();
  }
  void openWizard() {
    m_wizard = std::make_unique<StartupWizard>(&mainWindow(), m_records);
    m_wizard->create();
    m_wizard->show(PLACEMENT_SCREEN);
    letEventsPass();
  }
  void closeWizard() { m_wizard.reset(); }

  StartupWizard& wizard() { return *m_wizard; }
  FXWindow& page() { return *m_wizard->currentPage(); }
  std::string pageTitle() { return m_wizard->currentPage()->title().toUTF8(); }
  XMLPortfolios& records() { return m_records; }
  XMLSharePortfolio& portfolio() { return m_records.portfolios()[0]; }
  std::size_t portfolios() const { return m_records.numSubElements(u"SharePortfolios"); }
  /// The complete records as XML.
  std::string document() {
    std::ostringstream stream;
    m_records.encode(stream);
    return stream.str();
  }

  void next() {
    press(*wizard().nextButton());
    letEventsPass();
  }
  void back() {
    press(*wizard().backButton());
    letEventsPass();
  }
  void set(const std::string& label, const std::string& text) { type(field(page(), label), text); }
  std::string shown(const std::string& label) { return field(page(), label).getText().text(); }
  /// Finishes the current section.
  void finishSection() {
    press(*find<FXCheckButton>(page()));
    next();
  }
  bool sectionFinished() { return find<FXCheckButton>(page())->getCheck() == TRUE; }

  void toName() { next(); }
  void toCash(const std::string& name = "Trading") {
    toName();
    set("Portfolio name", name);
    next();
  }
  void enterCash(const std::string& amount, const std::string& date) {
    set("Amount", amount);
    set("Date", date);
    next();
  }
  /// The start: a portfolio "Trading" with 10,000 on 2 February 2026.
  void toSections() {
    toCash();
    enterCash("10000", "02/02/2026");
  }
  void toStage(int stage) {
    toSections();
    for (int i = 0; i < stage; ++i)
      finishSection();
  }
  /// Fills in the purchase form. The code was not searched for, which causes a question.
  void fillPurchase(const std::string& code, const std::string& date, const std::string& number = "100",
                    const std::string& price = "5") {
    set("Stock code", code);
    set("Number bought", number);
    set("Share price", price);
    set("Brokerage paid", "50");
    set("Date bought", date);
    answer("You have not checked the stock code by searching for the company.\n"
           "Are you sure you want to continue with this stock code?",
           "Yes");
  }
  void enterPurchase(const std::string& code, const std::string& date) {
    next();
    fillPurchase(code, date);
    next();
  }
  void choose(const std::string& code) {
    auto* box = find<FXComboBox>(page());
    const FXint index = box->findItem(code.c_str());
    if (index < 0)
      throw std::runtime_error("no entry " + code);
    box->setCurrentItem(index, TRUE);
  }
  void enterDividend(const std::string& code, const std::string& date) {
    next();
    choose(code);
    set("Dividend Rate", "0.5");
    set("Date Received", date);
    next();
  }
  void fillSale(const std::string& code, const std::string& date, const std::string& number) {
    choose(code);
    set("Number sold", number);
    set("Share price", "6");
    set("Brokerage paid", "50");
    set("Date sold", date);
  }
  /// The gateway of a program that starts again.
  void restartGateway() { m_gateway.restart(); }

private:
  MarketFixture m_market;
  GatewayScope m_gateway;
  XMLPortfolios m_records;
  std::unique_ptr<StartupWizard> m_wizard;
};

} // namespace Tallymoor
