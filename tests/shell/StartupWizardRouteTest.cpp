#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "entry/StartupWizard.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/GUIPanel.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ProgressDialog.h"
#include "xml/CountryOfResidence.h"
#include <csignal>

namespace Tallymoor {
namespace {

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE Portfolios SYSTEM \"Tallymoor Records.dtd\">\n";

/// The first start: the records must contain what a new user enters in the wizard.
class StartupWizardRouteTest : public ShellTest {
protected:
  StartupWizardRouteTest() {
    CountryOfResidence::destroyInstance(); // Franking exists in Australia only.
    for (const char16_t* code : {u"OLD.AX", u"ABC.AX"}) {
      market().addListing(code, String(u"Company ") + code, u"Australia");
      market().setCurrentPrice(code, 5.0);
      market().setHistory(code, Date(2026, 1, 1), Date(2026, 3, 2), 5.0);
    }
  }

  ~StartupWizardRouteTest() override { CountryOfResidence::destroyInstance(); }

  void useWizard(FXWindow& window) override {
    expectNoProgressInSight();
    take(window);
    walk();
  }
  /// The progress of the start would be behind the wizard.
  void expectNoProgressInSight() {
    for (FXWindow* shell = app().getRootWindow()->getFirst(); shell; shell = shell->getNext())
      EXPECT_FALSE(dynamic_cast<ProgressDialog*>(shell) && shell->shown());
  }
  void take(FXWindow& window) { m_wizard = &dynamic_cast<StartupWizard&>(window); }
  virtual void walk() = 0;

  StartupWizard& wizard() { return *m_wizard; }
  FXWindow& page() { return *wizard().currentPage(); }
  void next() {
    press(*wizard().nextButton());
    letEventsPass();
  }
  void finishSection() {
    press(*find<FXCheckButton>(page()));
    next();
  }
  void set(const std::string& label, const std::string& text) { type(field(page(), label), text); }
  void enterCash(const std::string& amount, const std::string& date, const std::string& text) {
    set("Amount", amount);
    set("Date", date);
    set("Description (optional)", text);
    next();
  }
  /// Searches for the code like a user; the search fills in the price.
  void enterPurchase(const std::string& code, const std::string& date, const std::string& comment) {
    next();
    whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
    set("Stock code", code);
    press(page(), "Search for stock code");
    EXPECT_STREQ("5.0000", field(page(), "Share price").getText().text());
    set("Number bought", "100");
    set("Date bought", date);
    find<FXText>(page())->setText(comment.c_str());
    next();
  }
  void choose(const char* code) {
    auto* box = find<FXComboBox>(page());
    box->setCurrentItem(box->findItem(code), TRUE);
  }

  void nameAndCash() {
    next();
    set("Portfolio name", "Trading & Co");
    next();
    enterCash("10,000", "02/02/2026", "from the bank");
  }
  void heldAndBought() {
    enterPurchase("OLD.AX", "15/01/2026", "");
    finishSection();
    enterPurchase("ABC.AX", "10/02/2026", "growth & <more>");
    finishSection();
  }
  void dividendAndSale() {
    next();
    choose("ABC.AX");
    set("Dividend Rate", "0.5");
    set("Date Received", "20/02/2026");
    next();
    finishSection();
    next();
    choose("OLD.AX");
    set("Number sold", "40");
    set("Share price", "6");
    set("Date sold", "25/02/2026");
    next();
    finishSection();
  }
  void cashSince() {
    next();
    enterCash("12.34", "27/02/2026", "for February");
    finishSection();
    next();
    enterCash("1000", "28/02/2026", "");
    finishSection();
    next();
    enterCash("500", "02/03/2026", "rent");
    finishSection();
  }

private:
  StartupWizard* m_wizard = nullptr;
};

class WholeRouteTest : public StartupWizardRouteTest {
protected:
  void walk() override {
    nameAndCash();
    heldAndBought();
    dividendAndSale();
    cashSince();
    press(wizard(), "Finish");
  }
};

/// The records for walk(), written by hand.
const std::string EXPECTED =
    HEAD +
    "<Portfolios><SharePortfolio><String>Trading Co</String>"
    "<HeldShares>"
    "<HeldShare><String>OLD.AX</String>"
    "<BuyEvent><Date>15/1/2026</Date><Constant>60.00</Constant><Constant>5.0000</Constant>"
    "<Constant>50.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
    "<HeldShare><String>ABC.AX</String>"
    "<BuyEvent><Date>10/2/2026</Date><Constant>100.00</Constant><Constant>5.0000</Constant>"
    "<Constant>50.00</Constant><String>growth &amp; &lt;more&gt;</String></BuyEvent>"
    "<Constant/><Constant/><Constant/></HeldShare>"
    "</HeldShares>"
    "<SoldShares><SoldShare><String>OLD.AX</String>"
    "<SellEvent><Date>15/1/2026</Date><Date>25/2/2026</Date><Constant>40.00</Constant><Constant>5.0000</"
    "Constant>"
    "<Constant>6.0000</Constant><Constant>0.00</Constant><Constant>50.00</Constant><String/></SellEvent>"
    "</SoldShare></SoldShares>"
    "<Dividends><DividendEvent><String>ABC.AX</String><Date>20/2/2026</Date><Constant>100.00</Constant>"
    "<Constant>0.500000</Constant><Constant>100</Constant><Constant>0.00</Constant><Constant>0.0000</"
    "Constant>"
    "<String/><Constant/></DividendEvent></Dividends>"
    "<CashReserve>"
    "<CashEvent><Date>2/2/2026</Date><Constant>10000.00</Constant><Constant>4</Constant>"
    "<String>DEPOSIT from the bank</String></CashEvent>"
    "<CashEvent><Date>10/2/2026</Date><Constant>550.00</Constant><Constant>2</Constant>"
    "<String>BUY 100.00 of ABC.AX @ 5.0000</String></CashEvent>"
    "<CashEvent><Date>20/2/2026</Date><Constant>50.00</Constant><Constant>1</Constant>"
    "<String>DIVIDEND ABC.AX @ 0.500000 x 100.00</String></CashEvent>"
    "<CashEvent><Date>25/2/2026</Date><Constant>190.00</Constant><Constant>1</Constant>"
    "<String>SELL 40.00 of OLD.AX @ 6.0000</String></CashEvent>"
    "<CashEvent><Date>27/2/2026</Date><Constant>12.34</Constant><Constant>3</Constant>"
    "<String>INTEREST for February</String></CashEvent>"
    "<CashEvent><Date>28/2/2026</Date><Constant>1000.00</Constant><Constant>4</Constant>"
    "<String>DEPOSIT </String></CashEvent>"
    "<CashEvent><Date>2/3/2026</Date><Constant>500.00</Constant><Constant>5</Constant>"
    "<String>WITHDRAWAL rent</String></CashEvent>"
    "</CashReserve><String/></SharePortfolio></Portfolios>";

TEST_F(WholeRouteTest, LeavesTheExpectedRecordsAndTheNode) {
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(EXPECTED, TestProfile::readFile(recordsPath())) << "saved as the wizard ends";
  ASSERT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading Co"));
  const SharePortfolioUser& portfolio = tallymoor().totalCapital()->portfolioNode(u"Trading Co")->portfolio();
  EXPECT_NEAR(10202.34, portfolio.cashReserveToday(), 0.001);
  EXPECT_NEAR(800.0, portfolio.sharesValueToday(), 0.001);
  EXPECT_TRUE(shows(tallymoor(), "$11,002.34")) << "the total is on the page";
  SharePortfolioTreeItem* node = tallymoor().totalCapital()->portfolioNode(u"Trading Co");
  EXPECT_TRUE(node->page()->shown());
  EXPECT_TRUE(node->isSelected()) << "tree and page agree";
  EXPECT_EQ(node, tallymoor().portfolioTree()->getCurrentItem());
  EXPECT_TRUE(TestProfile::fileExists(profile().dataFolder() + u"Trading CoCapRecord.xml"));
  leave();
  EXPECT_EQ(EXPECTED, TestProfile::readFile(recordsPath()));
}

TEST_F(WholeRouteTest, RunsFromTheMenuBesideOtherPortfolios) {
  whenModal("Tallymoor - Getting Started", [this](FXWindow& window) {
    EXPECT_TRUE(shows(window, "Welcome to Brindlecove\nTallymoor"));
    press(window, "Cancel");
  });
  command(TallymoorWindow::ID_WIZARD);
  EXPECT_EQ(EXPECTED, TestProfile::readFile(recordsPath()));
  EXPECT_EQ(1u, tallymoor().totalCapital()->portfolioNodes().size());
}

class CancelledRouteTest : public StartupWizardRouteTest {
protected:
  void walk() override {
    nameAndCash();
    heldAndBought();
    next(); // The dividend form brings the capital record up to date.
    whenModal("If you leave now, the portfolio Trading Co is dropped",
              [this](FXWindow& box) { press(box, "Yes"); });
    press(wizard(), "Cancel");
  }
};

TEST_F(CancelledRouteTest, LeavesNoPortfolioNoElementAndNoCapitalFile) {
  EXPECT_EQ(HEAD + "<Portfolios/>", TestProfile::readFile(recordsPath()));
  EXPECT_TRUE(tallymoor().store().portfolios().empty());
  EXPECT_TRUE(tallymoor().totalCapital()->portfolioNodes().empty());
  EXPECT_FALSE(TestProfile::fileExists(profile().dataFolder() + u"Trading CoCapRecord.xml"));
  leave();
  EXPECT_FALSE(TestProfile::fileExists(profile().dataFolder() + u"Trading CoCapRecord.xml"));
  EXPECT_EQ(HEAD + "<Portfolios/>", TestProfile::readFile(recordsPath()));
}

class WizardFromTheMenuTest : public WholeRouteTest {
protected:
  WizardFromTheMenuTest() {
    TestProfile::writeFile(recordsPath(),
                           HEAD + "<Portfolios><SharePortfolio><String>Old</String><HeldShares/><SoldShares/>"
                                  "<Dividends/><CashReserve/><String/></SharePortfolio></Portfolios>");
  }
};

TEST_F(WizardFromTheMenuTest, AddsItsPortfolioAndShowsIt) {
  whenModal("Tallymoor - Getting Started", [this](FXWindow& window) { useWizard(window); });
  command(TallymoorWindow::ID_WIZARD);
  EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Old"));
  SharePortfolioTreeItem* node = tallymoor().totalCapital()->portfolioNode(u"Trading Co");
  ASSERT_NE(nullptr, node);
  EXPECT_TRUE(node->page()->shown());
  EXPECT_EQ(node, tallymoor().portfolioTree()->getCurrentItem());
  EXPECT_TRUE(node->isSelected());
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading Co</String>"));
}

TEST_F(WizardFromTheMenuTest, TheEndOfTheProgramCancelsItInOrder) {
  whenModal("Tallymoor - Getting Started", [this](FXWindow& window) {
    take(window);
    nameAndCash();
    std::raise(SIGTERM);
  });
  command(TallymoorWindow::ID_WIZARD);
  runUntil([this] { return tallymoor().isShuttingDown(); });
  const std::string records = TestProfile::readFile(recordsPath());
  EXPECT_EQ(std::string::npos, records.find("Trading"));
  EXPECT_NE(std::string::npos, records.find("<String>Old</String>"));
}

class WizardAfterAFailedStartTest : public ShellTest {
protected:
  WizardAfterAFailedStartTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("TallymoorInternet::TallymoorInternet - failed to find a code search locator",
              [this](FXWindow& box) { press(box, "OK"); });
  }
  bool opensWizard() override { return false; }
};

TEST_F(WizardAfterAFailedStartTest, SaysWhatIsMissing) {
  answer("TallymoorWindow::onWizard failed. Exception : There was a failure during startup. Please restart "
         "Tallymoor",
         "OK");
  command(TallymoorWindow::ID_WIZARD);
  whenModal("Since there was a problem when you opened your\n", [this](FXWindow& box) { press(box, "No"); });
  leave();
}

} // namespace
} // namespace Tallymoor
