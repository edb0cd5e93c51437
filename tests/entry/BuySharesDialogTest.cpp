#include "entry/BuySharesDialog.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "market/MarketPrices.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class BuySharesDialogTest : public WindowTest {
protected:
  MarketFixture m_market;
  GatewayScope m_gateway;
  XMLSharePortfolio m_portfolio;
};

constexpr const char* UNCHECKED = "You have not checked the stock code by searching for the company.\n"
                                  "Are you sure you want to continue with this stock code?";

TEST_F(BuySharesDialogTest, TakesAPurchaseFromTheKeyboardAlone) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  BuySharesDialog dialog(&mainWindow(), portfolio);
  whenModal("Buy Shares", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "Specify the share code, date and buy price of a share purchase."));
    EXPECT_EQ(&field(form, "Stock code"), field(form, "Stock code").getParent()->getFocus());
    type(field(form, "Stock code"), "ABC.AX");
    type(field(form, "Number bought"), "10");
    type(field(form, "Share price"), "2.5");
    answer(UNCHECKED, "Yes");
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"ABC.AX"), dialog.panel()->code());
  EXPECT_EQ(10.0, dialog.panel()->number());
  EXPECT_EQ(2.5, dialog.panel()->price());
}

TEST_F(BuySharesDialogTest, AFailedCheckStaysAndKeepsTheFields) {
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  BuySharesDialog dialog(&mainWindow(), portfolio, u"ABC.AX");
  whenModal("Buy Shares", [&](FXWindow& form) {
    EXPECT_STREQ("ABC.AX", field(form, "Stock code").getText().text());
    type(field(form, "Share price"), "2.50x");
    answer("You must select the number of shares purchased.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    EXPECT_STREQ("2.50x", field(form, "Share price").getText().text());
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(BuySharesDialogTest, CancellingTheFormFetchesNothing) {
  m_market.setHistory(u"ABC.AX", Date(2026, 1, 1), Date(2026, 3, 3), 10.5);
  const SharePortfolioUser portfolio(m_portfolio, gatewayPrices());
  for (const bool byEscape : {true, false}) {
    BuySharesDialog dialog(&mainWindow(), portfolio, u"ABC.AX");
    whenModal("Buy Shares", [&](FXWindow& form) {
      FXTextField& date = field(form, "Date bought");
      date.setFocus();
      type(date, "16/02/2026");
      if (byEscape) {
        key(form, KEY_Escape);
      } else {
        button(form, "Cancel").setFocus(); // A click does so before its command.
        letEventsPass();
        press(form, "Cancel");
      }
    });
    EXPECT_EQ(0u, dialog.execute());
    letEventsPass();
  }
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::History).empty());
  BuySharesDialog dialog(&mainWindow(), portfolio, u"ABC.AX");
  whenModal("Buy Shares", [&](FXWindow& form) {
    FXTextField& date = field(form, "Date bought");
    date.setFocus();
    type(date, "16/02/2026");
    field(form, "Number bought").setFocus();
    letEventsPass();
    EXPECT_STREQ("10.5000", field(form, "Share price").getText().text());
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(1u, m_market.requested(MarketFixture::Page::History).size());
}

} // namespace
} // namespace Tallymoor
