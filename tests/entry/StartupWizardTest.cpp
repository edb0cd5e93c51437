#include "StartupWizardTest.h"
#include "FocusedWidget.h"
#include "market/MarketPrices.h"
#include "session/BookQuestions.h"

namespace Tallymoor {
namespace {

std::string started(const std::string& shares, const std::string& sold, const std::string& dividends,
                    const std::string& cash) {
  const auto list = [](const std::string& name, const std::string& content) {
    return content.empty() ? "<" + name + "/>" : "<" + name + ">" + content + "</" + name + ">";
  };
  return "<Portfolios><SharePortfolio><String>Trading</String>" + list("HeldShares", shares) +
         list("SoldShares", sold) + list("Dividends", dividends) +
         list("CashReserve",
              "<CashEvent><Date>2/2/2026</Date><Constant>10000.00</Constant><Constant>4</Constant>"
              "<String>DEPOSIT </String></CashEvent>" +
                  cash) +
         "<String/></SharePortfolio></Portfolios>";
}

std::string held(const std::string& code, const std::string& date, const std::string& number = "100.00") {
  return "<HeldShare><String>" + code + "</String><BuyEvent><Date>" + date + "</Date><Constant>" + number +
         "</Constant><Constant>5.0000</Constant><Constant>50.00</Constant><String/></BuyEvent>"
         "<Constant/><Constant/><Constant/></HeldShare>";
}

std::string cashEvent(const std::string& date, const std::string& value, const std::string& type,
                      const std::string& text) {
  return "<CashEvent><Date>" + date + "</Date><Constant>" + value + "</Constant><Constant>" + type +
         "</Constant><String>" + text + "</String></CashEvent>";
}

TEST_F(StartupWizardTest, WelcomePageListsThePapersNeeded) {
  EXPECT_EQ("Tallymoor - Getting Started", title(wizard()));
  EXPECT_TRUE(shows(wizard(), "Welcome to Brindlecove\nTallymoor"));
  for (const char* text :
       {"This wizard will guide you through the process of \nsetting up Tallymoor with your existing "
        "portfolio.",
        "Before you start, please choose a date from which to start\nfully recording all your share "
        "activities "
        "in a portfolio or\nportfolios. We suggest the start of the current financial year.",
        "Documents/Information you will need:", "->   Cash reserve total at your nominated start date",
        "->   Contract notes or records of shares held at\nyour start date",
        "->   Contract notes or records of shares bought and sold\nsince the start date",
        "->   Records of dividends received since the start date",
        "->   Records of interest received since the start date",
        "->   Records of cash deposits (withdrawals) into (from) your\ncash reserve since the start date."})
    EXPECT_TRUE(shows(page(), text)) << text;
  EXPECT_FALSE(wizard().backButton()->isEnabled());
}

// ---- The name ----

TEST_F(StartupWizardTest, ANameIsNeeded) {
  toName();
  EXPECT_TRUE(shows(wizard(), "Choose a portfolio name"));
  EXPECT_TRUE(shows(wizard(), "Enter the name of a new portfolio to set up"));
  for (const char* name : {"", "  ", "</>"}) {
    set("Portfolio name", name);
    answer("You must enter a portfolio name!", "OK");
    next();
  }
  EXPECT_EQ("Choose a portfolio name", pageTitle());
  EXPECT_EQ(0u, portfolios());
}

TEST_F(StartupWizardTest, ATakenNameIsRefused) {
  records().addSubElement(new XMLSharePortfolio, u"SharePortfolios").subElement(u"Name").setValue(u"Trading");
  toName();
  set("Portfolio name", "  Tra<ding>");
  answer("A portfolio with that name already exists.", "OK");
  next();
  EXPECT_EQ("Trading", shown("Portfolio name"));
  EXPECT_EQ(1u, portfolios());
  set("Portfolio name", "Growth");
  next();
  EXPECT_EQ("Starting Cash", pageTitle());
  EXPECT_EQ(2u, portfolios());
}

TEST_F(StartupWizardTest, TheNameMakesAnEmptyPortfolioAndBackTakesItAway) {
  toCash();
  EXPECT_EQ("<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
            "<CashReserve/><String/></SharePortfolio></Portfolios>",
            document());
  set("Amount", "123");
  back();
  EXPECT_EQ("Choose a portfolio name", pageTitle());
  EXPECT_EQ(0u, portfolios());
  EXPECT_EQ("Trading", shown("Portfolio name"));
  next();
  EXPECT_EQ(1u, portfolios());
  EXPECT_EQ("123", shown("Amount")) << "what was typed is still there";
}

TEST_F(StartupWizardTest, TheCapitalRecordOfAnEarlierPortfolioOfTheNameIsNotUsed) {
  {
    XMLSharePortfolio old;
    old.subElement(u"Name").setValue(u"Trading");
    SharePortfolioUser user(old, gatewayPrices());
    user.creditCash(Date(2026, 1, 5), 777.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    updateCapitalRecord(user);
    user.capitalRecord().save();
  }
  toStage(2);
  for (int i = 0; i < 4; ++i)
    finishSection();
  press(*wizard().nextButton());
  const std::unique_ptr<SharePortfolioUser> user = wizard().takePortfolio();
  EXPECT_FALSE(user->capitalRecord().hasDayCap(Date(2026, 1, 5)));
  updateCapitalRecord(*user);
  EXPECT_EQ(Date(2026, 2, 2), user->capitalRecord().firstRecordDate());
  EXPECT_EQ(10000.0, user->capitalToday());
}

// ---- Money ----

TEST_F(StartupWizardTest, StartingCashIsADeposit) {
  toCash();
  EXPECT_TRUE(shows(wizard(), "Please enter the value of the cash reserve\nand the portfolio start date for "
                              "when it was valid."));
  set("Amount", "10000");
  set("Date", "02/02/2026");
  next();
  EXPECT_EQ("Held Shares at Start Date", pageTitle());
  EXPECT_EQ(started("", "", "", ""), document());
  back();
  EXPECT_EQ("Starting Cash", pageTitle());
  EXPECT_EQ("10000", shown("Amount"));
  EXPECT_EQ("<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
            "<CashReserve/><String/></SharePortfolio></Portfolios>",
            document());
  EXPECT_FALSE(wizard().backButton()->isEnabled());
}

TEST_F(StartupWizardTest, APortfolioMayStartWithNoCash) {
  toCash();
  enterCash("0.00", "02/02/2026");
  EXPECT_EQ("Held Shares at Start Date", pageTitle());
  EXPECT_EQ("2/2/2026", textValue(portfolio().cashEvents()[0], u"Date").toUTF8());
  for (int i = 0; i < 3; ++i)
    finishSection();
  next();
  EXPECT_EQ("Interest Received", pageTitle());
  answer("You must enter the value.", "OK"); // Of all other cash.
  next();
}

TEST_F(StartupWizardTest, InterestDepositsAndWithdrawalsAreBooked) {
  toStage(2);
  finishSection(); // No shares, so interest is next.
  for (const char* amount : {"1", "2", "3"}) {
    next();
    EXPECT_EQ("0.00", shown("Amount"));
    set("Amount", amount);
    set("Date", "03/02/2026");
    set("Description (optional)", "note");
    next();
    finishSection();
  }
  EXPECT_EQ("Completing Tallymoor Setup", pageTitle());
  EXPECT_EQ(started("", "", "",
                    cashEvent("3/2/2026", "1.00", "3", "INTEREST note") +
                        cashEvent("3/2/2026", "2.00", "4", "DEPOSIT note") +
                        cashEvent("3/2/2026", "3.00", "5", "WITHDRAWAL note")),
            document());
}

TEST_F(StartupWizardTest, NothingIsHalfRecordedWhenRecordingFails) {
  toName();
  set("Portfolio name", "Trading");
  const std::string before = document();
  TallymoorInternet::shutdown(); // the portfolio is added, and then its record can't hear of prices
  answer("Wizard::onNext failed. Exception : in shutdown mode", "OK");
  next();
  EXPECT_EQ(before, document());
  restartGateway();
  next();
  EXPECT_EQ("Starting Cash", pageTitle());
  EXPECT_EQ(1u, portfolios());
}

// ---- The sections ----

struct Section {
  const char *title, *text, *question, *help, *entryTitle, *entryText;
};

const Section SECTIONS[] = {
    {"Held Shares at Start Date",
     "In the following screens you can enter shares which\nwere already held at your chosen portfolio start "
     "date.\n",
     "Finished entering already held shares?",
     "Check this button when there are no more shares\nleft to enter that were held at the portfolio start "
     "date",
     "Shares Already Held",
     "Specify the share code, date and buy price of a stock\nheld at the portfolio start date."},
    {"Shares Purchased Since the Start Date",
     "In the following screens you can enter shares which were bought\nanytime after the start date, "
     "including "
     "ones subsequently sold.",
     "Finished entering share purchases?",
     "Check this button when there are no more shares\nleft to enter that were bought after the "
     "portfolio\nstart date.",
     "Shares bought",
     "Specify the share code, date and buy price of a stock\nthat was purchased after the portfolio start "
     "date."},
    {"Dividends Received Since the Start Date",
     "In the following screens you can enter dividends which\nwere received anytime after the start date.",
     "Finished entering dividends?",
     "Check this button when there are no more dividends\nleft to enter that were received after the "
     "portfolio\nstart date.",
     "Dividends Received", "Specify the share code, date and amount of the dividend received"},
    {"Shares Sold Since Start Date",
     "In the following screens you can register sales of\nthe shares you have entered and since sold.",
     "Finished entering share sales?", "Check this button when there are no more shares\nleft to sell.",
     "Shares Sold",
     "Specify the share code, date and buy price of a stock\nheld at the portfolio start date."},
    {"Interest Received since Start Date",
     "In the following screens you can enter interest\nthat you have received on your cash reserve.",
     "Finished entering interest received?",
     "Check this button when there are no more interest\ncredits left to enter.", "Interest Received",
     "Please enter the value of the interest received\nfor the date of the credit."},
    {"Deposits Made Since Start Date",
     "In the following screens you can enter cash deposits\nthat you have made into your cash reserve.",
     "Finished entering cash deposits?", "Check this button when there are no cash deposits\nleft to enter.",
     "Deposit Made", "Please enter the value of the cash deposit\nmade for the date of the deposit."},
    {"Withdrawals Made Since Start Date",
     "In the following screens you can enter cash withdrawals\nthat you have made from your cash reserve.",
     "Finished entering cash withdrawals?",
     "Check this button when there are no cash withdrawals\nleft to enter.", "Withdrawal Made",
     "Please enter the value of the cash withdrawal\nmade for the date of the debit."},
};

/// Checks that no widget is smaller than its content or outside its frame.
void expectNothingCutOff(FXWindow& in) {
  for (FXWindow* child = in.getFirst(); child; child = child->getNext()) {
    if (!child->shown())
      continue;
    const auto* label = dynamic_cast<FXLabel*>(child);
    const std::string name = label ? label->getText().text() : child->getClassName();
    EXPECT_GE(child->getX(), 0) << name;
    EXPECT_GE(child->getY(), 0) << name;
    EXPECT_LE(child->getX() + child->getWidth(), in.getWidth()) << name;
    EXPECT_LE(child->getY() + child->getHeight(), in.getHeight()) << name;
    // A combo box determines the width of its field.
    const bool isField = dynamic_cast<FXTextField*>(child) && !dynamic_cast<FXComboBox*>(&in);
    if (label || isField) {
      EXPECT_GE(child->getWidth(), child->getDefaultWidth()) << name;
      EXPECT_GE(child->getHeight(), child->getDefaultHeight()) << name;
    }
    if (!dynamic_cast<FXText*>(child))
      expectNothingCutOff(*child);
  }
}

TEST_F(StartupWizardTest, EachSectionHasItsTextsAndNothingIsCutOffAt800By600) {
  // Room for the title bar and the window frame.
  EXPECT_LE(wizard().getWidth(), 800 - 10);
  EXPECT_LE(wizard().getHeight(), 600 - 40);
  expectNothingCutOff(wizard());
  toCash();
  expectNothingCutOff(wizard());
  enterCash("10000", "02/02/2026");
  for (const Section& section : SECTIONS) {
    SCOPED_TRACE(section.title);
    EXPECT_TRUE(shows(wizard(), section.title));
    EXPECT_EQ(section.title, pageTitle());
    for (const char* text : {section.text, section.question, section.help})
      EXPECT_TRUE(shows(page(), text)) << text;
    EXPECT_FALSE(sectionFinished());
    expectNothingCutOff(wizard());
    next();
    EXPECT_EQ(section.entryTitle, pageTitle());
    EXPECT_TRUE(shows(wizard(), section.entryText));
    expectNothingCutOff(wizard());
    if (pageTitle() == "Shares Already Held") {
      fillPurchase("ABC.AX", "10/01/2026");
      next();
    } else {
      back();
    }
    finishSection();
  }
  EXPECT_TRUE(shows(wizard(), "Completing Tallymoor Setup"));
  EXPECT_TRUE(shows(page(),
                    "You have completed the initial setup of Tallymoor\nand are ready to use it to keep "
                    "records of\nyour share portfolios. Enjoy!"));
  expectNothingCutOff(wizard());
}

TEST_F(StartupWizardTest, APortfolioWithNoSharesPassesOverTheSales) {
  toStage(2);
  EXPECT_EQ("Dividends Received Since the Start Date", pageTitle());
  finishSection();
  EXPECT_EQ("Interest Received since Start Date", pageTitle());
  back();
  EXPECT_EQ("Dividends Received Since the Start Date", pageTitle());
}

TEST_F(StartupWizardTest, BackFromASectionRestoresTheOneBefore) {
  toStage(1);
  back();
  EXPECT_EQ("Held Shares at Start Date", pageTitle());
  EXPECT_TRUE(shows(page(), "Finished entering already held shares?"));
  EXPECT_TRUE(sectionFinished());
  EXPECT_FALSE(wizard().backButton()->isEnabled());
  next();
  EXPECT_EQ("Shares Purchased Since the Start Date", pageTitle());
  EXPECT_FALSE(sectionFinished());
  EXPECT_TRUE(wizard().backButton()->isEnabled());
}

TEST_F(StartupWizardTest, BackFromTheEndRestoresNext) {
  toStage(2);
  for (int i = 0; i < 4; ++i)
    finishSection();
  EXPECT_STREQ("Finish", wizard().nextButton()->getText().text());
  back();
  EXPECT_EQ("Withdrawals Made Since Start Date", pageTitle());
  EXPECT_STREQ("Next >", wizard().nextButton()->getText().text());
  EXPECT_TRUE(sectionFinished());
  next();
  EXPECT_EQ("Completing Tallymoor Setup", pageTitle());
}

// ---- Purchases ----

TEST_F(StartupWizardTest, SharesHeldAtTheStartTakeNothingFromTheCash) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  EXPECT_EQ("Held Shares at Start Date", pageTitle());
  EXPECT_EQ(started(held("OLD.AX", "15/1/2026"), "", "", ""), document());
}

TEST_F(StartupWizardTest, SharesHeldAtTheStartMustBeBoughtByThen) {
  toSections();
  next();
  EXPECT_EQ("02/02/2026", shown("Date bought")) << "the start date is proposed";
  fillPurchase("OLD.AX", "03/02/2026");
  answer("You specified a buy date of 03/02/2026,\nwhich is after your portfolio start date, "
         "02/02/2026.\nShares "
         "bought since then are entered in the next section.",
         "OK");
  next();
  EXPECT_EQ("Shares Already Held", pageTitle());
  EXPECT_EQ(&field(page(), "Date bought"), focused(wizard()));
  EXPECT_EQ(started("", "", "", ""), document());
  fillPurchase("OLD.AX", "02/02/2026");
  next();
  EXPECT_EQ(started(held("OLD.AX", "2/2/2026"), "", "", ""), document());
}

TEST_F(StartupWizardTest, SharesBoughtSinceAreTakenFromTheCash) {
  toStage(1);
  enterPurchase("ABC.AX", "02/02/2026"); // The start date itself.
  EXPECT_EQ(started(held("ABC.AX", "2/2/2026"), "", "",
                    cashEvent("2/2/2026", "550.00", "2", "BUY 100.00 of ABC.AX @ 5.0000")),
            document());
  next();
  EXPECT_EQ("", shown("Stock code")) << "the form is reset";
}

TEST_F(StartupWizardTest, BackTakesAPurchaseBackAndKeepsTheForm) {
  toStage(1);
  enterPurchase("ABC.AX", "10/02/2026");
  back();
  EXPECT_EQ("Shares bought", pageTitle());
  EXPECT_EQ(started("", "", "", ""), document());
  EXPECT_EQ("ABC.AX", shown("Stock code"));
  EXPECT_EQ("100", shown("Number bought"));
  EXPECT_FALSE(wizard().backButton()->isEnabled());
  set("Number bought", "200");
  answer("You have not checked the stock code by searching for the company.\n"
         "Are you sure you want to continue with this stock code?",
         "Yes");
  next();
  EXPECT_EQ(started(held("ABC.AX", "10/2/2026", "200.00"), "", "",
                    cashEvent("10/2/2026", "1050.00", "2", "BUY 200.00 of ABC.AX @ 5.0000")),
            document());
}

TEST_F(StartupWizardTest, InputIsKeptAfterBack) {
  toStage(1);
  next();
  set("Stock code", "ABC.AX");
  back();
  EXPECT_EQ("Shares Purchased Since the Start Date", pageTitle());
  EXPECT_EQ(started("", "", "", ""), document());
  next();
  EXPECT_EQ("ABC.AX", shown("Stock code"));
}

const std::string EARLY_PURCHASE =
    "You specified a buy date of 30/01/2026,\nwhich is before your portfolio start date, 02/02/2026.\nDo you "
    "want "
    "to re enter the date for this? If you don't\nthe stock will be added as portfolio starting stock.";

TEST_F(StartupWizardTest, APurchaseBeforeTheStartAnsweredYesStays) {
  toStage(1);
  next();
  fillPurchase("ABC.AX", "30/01/2026");
  answer(EARLY_PURCHASE, "Yes");
  next();
  EXPECT_EQ("Shares bought", pageTitle());
  EXPECT_EQ("ABC.AX", shown("Stock code"));
  EXPECT_EQ(&field(page(), "Date bought"), focused(wizard()));
  EXPECT_EQ(started("", "", "", ""), document());
  back();
  EXPECT_EQ("Shares Purchased Since the Start Date", pageTitle());
}

TEST_F(StartupWizardTest, APurchaseBeforeTheStartAnsweredNoIsStartingStock) {
  toStage(1);
  next();
  fillPurchase("ABC.AX", "30/01/2026");
  answer(EARLY_PURCHASE, "No");
  next();
  EXPECT_EQ("Shares Purchased Since the Start Date", pageTitle());
  EXPECT_EQ(started(held("ABC.AX", "30/1/2026"), "", "", ""), document());
}

TEST_F(StartupWizardTest, AStockOfAnotherMarketThatIsNotWantedStays) {
  toStage(1);
  enterPurchase("ABC.AX", "10/02/2026");
  const std::string before = document();
  next();
  fillPurchase("IBM.US", "10/02/2026");
  answer(
      "You are about to buy stock from a different market to\nexisting stock held in this portfolio. If you "
      "continue,\nthe portfolio tracking will be inconsistent due to currency differences.\nWe recommend you "
      "do "
      "NOT continue, and then buy this stock from a\ndifferent portfolio. Do you want to continue?",
      "No");
  next();
  EXPECT_EQ("Shares bought", pageTitle());
  EXPECT_EQ(before, document());
}

TEST_F(StartupWizardTest, AFormWithAnErrorStays) {
  toSections();
  next();
  answer("You must select the number of shares purchased.", "OK");
  next();
  EXPECT_EQ("Shares Already Held", pageTitle());
}

// ---- Dividends and sales ----

TEST_F(StartupWizardTest, DividendsAreRecordedAndTakenBack) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  finishSection();
  enterDividend("OLD.AX", "20/02/2026");
  EXPECT_EQ("Dividends Received Since the Start Date", pageTitle());
  EXPECT_EQ(started(held("OLD.AX", "15/1/2026"), "",
                    "<DividendEvent><String>OLD.AX</String><Date>20/2/2026</Date><Constant>100.00</Constant>"
                    "<Constant>0.500000</Constant><Constant>100</Constant><Constant>0.00</Constant>"
                    "<Constant>0.0000</Constant><String/><Constant/></DividendEvent>",
                    cashEvent("20/2/2026", "50.00", "1", "DIVIDEND OLD.AX @ 0.500000 x 100.00")),
            document());
  back();
  EXPECT_EQ("Dividends Received", pageTitle());
  EXPECT_EQ("0.5", shown("Dividend Rate"));
  EXPECT_EQ(started(held("OLD.AX", "15/1/2026"), "", "", ""), document());
}

TEST_F(StartupWizardTest, ADividendBeforeTheStartStays) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  finishSection();
  answer("You specified a dividend date of 01/02/2026,\nwhich is before your portfolio start date, "
         "02/02/2026.\nPlease re-enter the date for this, or cancel the dividend\nas it won't affect your "
         "portfolio.",
         "OK");
  enterDividend("OLD.AX", "01/02/2026");
  EXPECT_EQ("Dividends Received", pageTitle());
  EXPECT_EQ(&field(page(), "Date Received"), focused(wizard()));
  EXPECT_EQ(started(held("OLD.AX", "15/1/2026"), "", "", ""), document());
}

TEST_F(StartupWizardTest, SalesAreRecordedTheListFollowsAndBackRestoresTheShares) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  finishSection();
  finishSection();
  next();
  fillSale("OLD.AX", "25/02/2026", "100");
  next();
  const std::string sold =
      "<SoldShare><String>OLD.AX</String><SellEvent><Date>15/1/2026</Date><Date>25/2/2026</Date>"
      "<Constant>100.00</Constant><Constant>5.0000</Constant><Constant>6.0000</Constant><Constant>50.00"
      "</Constant><Constant>50.00</Constant><String/></SellEvent></SoldShare>";
  EXPECT_EQ(started("", sold, "", cashEvent("25/2/2026", "550.00", "1", "SELL 100.00 of OLD.AX @ 6.0000")),
            document());
  back();
  EXPECT_EQ("Shares Sold", pageTitle());
  EXPECT_EQ(started(held("OLD.AX", "15/1/2026"), "", "", ""), document());
  next(); // The form keeps the selection, and the record has its days again.
  EXPECT_EQ("Shares Sold Since Start Date", pageTitle());
  next();
  EXPECT_EQ(1, find<FXComboBox>(page())->getNumItems()) << "nothing is left to sell";
}

TEST_F(StartupWizardTest, ASaleBeforeTheStartNamesTheDividendsDate) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  finishSection();
  finishSection();
  enterDividend("OLD.AX", "20/02/2026");
  finishSection();
  next();
  fillSale("OLD.AX", "31/01/2026", "100");
  answer("You specified a sell date of 20/02/2026,\nwhich is before your portfolio start date, "
         "02/02/2026.\nPlease "
         "re-enter the date for this, or cancel the sale\nas it won't affect your portfolio.",
         "OK");
  const std::string before = document();
  next();
  EXPECT_EQ("Shares Sold", pageTitle());
  EXPECT_EQ(before, document());
}

TEST_F(StartupWizardTest, AFailedRecordIsReportedAndTheWizardContinues) {
  toSections();
  next();
  fillPurchase("NIL.AX", "15/01/2026");
  next();
  finishSection();
  finishSection();
  portfolio().heldShares()[0].subElement(u"BuyEvents").subElement(u"BuyPrice").setValue(u"0");
  whenModal("There was a problem refreshing your capital records.",
            [this](FXWindow& box) { press(box, "OK"); });
  next();
  EXPECT_EQ("Dividends Received", pageTitle());
}

// ---- The end ----

TEST_F(StartupWizardTest, CancelLeavesNoPortfolioAndNoFile) {
  toSections();
  enterPurchase("OLD.AX", "15/01/2026");
  const String file = profile().dataFolder() + u"TradingCapRecord.xml";
  TestProfile::writeFile(file, "days of long ago");
  whenModal("If you leave now, the portfolio Trading is dropped",
            [this](FXWindow& box) { press(box, "Yes"); });
  press(*wizard().cancelButton());
  EXPECT_EQ("<Portfolios/>", document());
  EXPECT_FALSE(TestProfile::fileExists(file));
  EXPECT_EQ(nullptr, wizard().takePortfolio());
  EXPECT_FALSE(wizard().shown());
}

TEST_F(StartupWizardTest, CancelEndsTheWizardEvenIfTheFileCannotBeRemoved) {
  toSections();
  // A folder with this name can't be removed as a file.
  TestProfile::writeFile(profile().dataFolder() + u"TradingCapRecord.xml/inside", "x");
  whenModal("If you leave now, the portfolio Trading is dropped",
            [this](FXWindow& box) { press(box, "Yes"); });
  whenModal("Wizard::onCancel failed.", [this](FXWindow& box) { press(box, "OK"); });
  press(*wizard().cancelButton());
  EXPECT_EQ(0u, portfolios());
  EXPECT_FALSE(wizard().shown());
}

TEST_F(StartupWizardTest, AWizardDestroyedEarlyLeavesNothing) {
  toSections();
  closeWizard();
  EXPECT_EQ(0u, portfolios());
}

TEST_F(StartupWizardTest, FinishReturnsThePortfolio) {
  toStage(2);
  for (int i = 0; i < 4; ++i)
    finishSection();
  press(*wizard().nextButton());
  EXPECT_FALSE(wizard().shown());
  const std::unique_ptr<SharePortfolioUser> user = wizard().takePortfolio();
  ASSERT_NE(nullptr, user);
  closeWizard();
  EXPECT_EQ(String(u"Trading"), user->name());
  EXPECT_EQ(started("", "", "", ""), document());
}

TEST_F(StartupWizardTest, TheKeyboardAloneLeadsThrough) {
  key(wizard(), KEY_Return);
  letEventsPass();
  EXPECT_EQ(&field(page(), "Portfolio name"), focused(wizard()));
  type(field(page(), "Portfolio name"), "Trading");
  key(wizard(), KEY_Return);
  letEventsPass();
  EXPECT_EQ(&field(page(), "Amount"), focused(wizard()));
  type(field(page(), "Amount"), "10");
  key(wizard(), KEY_Return);
  letEventsPass();
  EXPECT_EQ("Held Shares at Start Date", pageTitle());
  EXPECT_EQ(find<FXCheckButton>(page()), focused(wizard()));
}

} // namespace
} // namespace Tallymoor
