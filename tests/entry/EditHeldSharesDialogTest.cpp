#include "entry/EditHeldSharesDialog.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "market/MarketPrices.h"
#include "market/StockNames.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class EditHeldSharesDialogTest : public WindowTest {
protected:
  EditHeldSharesDialogTest() {
    m_share.setCode(u"ABC.AX");
    m_event.subElement(u"BuyDate").setValue(u"3/7/2025");
    m_event.subElement(u"NumHeld").setValue(u"100.00");
    m_event.subElement(u"BuyPrice").setValue(u"12.3400");
    m_event.subElement(u"Brokerage").setValue(u"50.00");
    m_event.subElement(u"Comment").setValue(u"cheap & sound");
  }
  XMLHeldShare m_share;
  XMLBuyEvent& m_event = m_share.parcels().add();
  MarketFixture m_market;
  GatewayScope m_gateway;
  XMLSharePortfolio m_portfolio;
};

TEST_F(EditHeldSharesDialogTest, ShowsThePurchase) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  EditHeldSharesDialog dialog(&mainWindow(), portfolio, m_event);
  const std::string caption =
      "Edit share purchase for ABC.AX on " + Date(2025, 7, 3).toString(DATE_DISPLAY_LOCAL).toUTF8();
  EXPECT_EQ(caption, title(dialog));
  EXPECT_EQ(String(u"ABC.AX"), dialog.panel()->code());
  EXPECT_EQ(Date(2025, 7, 3), dialog.panel()->date());
  EXPECT_EQ(100.0, dialog.panel()->number());
  EXPECT_EQ(12.34, dialog.panel()->price());
  EXPECT_EQ(50.0, dialog.panel()->brokerage());
  EXPECT_EQ(String(u"cheap & sound"), dialog.panel()->comments());
}

TEST_F(EditHeldSharesDialogTest, APartOfAPurchaseKeepsItsDigits) {
  m_event.subElement(u"NumHeld").setValue(u"66.666667");
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  EditHeldSharesDialog dialog(&mainWindow(), portfolio, m_event);
  EXPECT_EQ("66.666667", std::string(field(dialog, "Number bought").getText().text()));
  EXPECT_EQ(66.666667, dialog.panel()->number());
}

TEST_F(EditHeldSharesDialogTest, TheCodeCannotBeChanged) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  EditHeldSharesDialog dialog(&mainWindow(), portfolio, m_event);
  EXPECT_FALSE(field(dialog, "Stock code").isEditable());
  EXPECT_FALSE(button(dialog, "Search for stock code").shown());
}

TEST_F(EditHeldSharesDialogTest, ShowsTheNameTheTotalAndTheCashWithoutTheOldCost) {
  SharePortfolioUser user(m_portfolio, gatewayPrices());
  StockNames::remember(u"ABC.AX", u"Alphabet Bricks");
  user.creditCash(Date(2025, 7, 1), 5000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user.buyShares(u"ABC.AX", {Date(2025, 7, 3), 100.0, 12.34, 50.0, String()});
  EditHeldSharesDialog dialog(&mainWindow(), user, user.findHeldShare(u"ABC.AX")->parcels()[0]);
  EXPECT_STREQ("Alphabet Bricks", field(dialog, "Stock name").getText().text());
  EXPECT_STREQ("1284.00", field(dialog, "Total to pay").getText().text());
  EXPECT_STREQ("3716.00", field(dialog, "Cash afterwards").getText().text());
  dialog.create();
  type(field(dialog, "Number bought"), "200");
  EXPECT_STREQ("2518.00", field(dialog, "Total to pay").getText().text());
  EXPECT_STREQ("2482.00", field(dialog, "Cash afterwards").getText().text());
}

TEST_F(EditHeldSharesDialogTest, APurchaseThatTookNoCashShowsNone) {
  SharePortfolioUser user(m_portfolio, gatewayPrices());
  user.addBuyEvent(u"ABC.AX", {Date(2025, 7, 3), 100.0, 12.34, 50.0, String()});
  EditHeldSharesDialog dialog(&mainWindow(), user, user.findHeldShare(u"ABC.AX")->parcels()[0]);
  EXPECT_FALSE(field(dialog, "Cash afterwards").getParent()->shown());
}

TEST_F(EditHeldSharesDialogTest, AllChecksApply) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  EditHeldSharesDialog dialog(&mainWindow(), portfolio, m_event);
  whenModal("Edit share purchase for ABC.AX on 03/07/2025", [&](FXWindow& form) {
    type(field(form, "Number bought"), "0");
    answer("You must select the number of shares purchased.", "OK");
    press(form, "OK");
    type(field(form, "Number bought"), "120");
    type(field(form, "Date bought"), "04/03/2026");
    answer("You can't specify a buy date in the future.", "OK");
    press(form, "OK");
    type(field(form, "Date bought"), "04/07/2025");
    press(form, "OK"); // The code is fixed and not asked about.
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(120.0, dialog.panel()->number());
  EXPECT_EQ(Date(2025, 7, 4), dialog.panel()->date());
}

TEST_F(EditHeldSharesDialogTest, TheRecordItselfStaysUnchanged) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  EditHeldSharesDialog dialog(&mainWindow(), portfolio, m_event);
  whenModal("Edit share purchase for ABC.AX on 03/07/2025", [&](FXWindow& form) {
    type(field(form, "Number bought"), "120");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(String(u"100.00"), m_event.subElement(u"NumHeld").value());
}

} // namespace
} // namespace Tallymoor
