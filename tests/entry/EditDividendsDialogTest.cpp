#include "entry/EditDividendsDialog.h"
#include "PortfolioFormTest.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/StockChoice.h"
#include "xml/Leaves.h"

namespace Tallymoor {
namespace {

constexpr const char* CAPTION = "Edit dividend of OLD.AX on 27/02/2026";

class EditDividendsDialogTest : public PortfolioFormTest {
protected:
  /// For a stock that was sold completely.
  EditDividendsDialogTest() {
    m_event.subElement(u"Code").setValue(u"OLD.AX");
    m_event.subElement(u"ReceiveDate").setValue(u"27/2/2026");
    m_event.subElement(u"NumHeld").setValue(u"120.00");
    m_event.subElement(u"Rate").setValue(u"0.123456");
    m_event.subElement(u"PercentFranked").setValue(u"40");
    m_event.subElement(u"DRPShares").setValue(u"0.00");
    m_event.subElement(u"DRPRate").setValue(u"0.0000");
  }
  XMLDividendEvent m_event;
};

TEST_F(EditDividendsDialogTest, ShowsADividendInCash) {
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  const ReceiveDividendsPanel& panel = *dialog.panel();
  EXPECT_EQ(CAPTION, title(dialog));
  EXPECT_EQ(String(u"OLD.AX"), panel.code());
  EXPECT_EQ((std::vector<std::string>{"<select stock code>", "ABC.AX", "XYZ.AX", "OLD.AX"}),
            entries(*find<StockChoice>(dialog)));
  EXPECT_EQ(120.0, panel.numHeld());
  EXPECT_EQ(0.123456, panel.rate());
  EXPECT_EQ(40, panel.percentFranked());
  EXPECT_STREQ("14.81", field(dialog, "Value").getText().text());
  EXPECT_STREQ("2.54", field(dialog, "Franking Credit").getText().text());
  EXPECT_EQ(Date(2026, 2, 27), panel.date());
  EXPECT_FALSE(panel.isForeign());
  EXPECT_FALSE(panel.isReinvested());
}

TEST_F(EditDividendsDialogTest, ShowsAReinvestedForeignDividend) {
  m_event.subElement(u"DRPShares").setValue(u"6.50");
  m_event.subElement(u"DRPRate").setValue(u"2.2790");
  m_event.subElement(u"ForeignDividend").setValue(u"New Zealand");
  m_event.subElement(u"WithholdingTax").setValue(u"2.20");
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  const ReceiveDividendsPanel& panel = *dialog.panel();
  EXPECT_TRUE(panel.isReinvested());
  EXPECT_EQ(6.5, panel.sharesReceived());
  EXPECT_EQ(2.279, panel.sharePrice());
  EXPECT_TRUE(field(dialog, "Share price").isEnabled());
  EXPECT_EQ(String(u"New Zealand"), panel.country());
  EXPECT_EQ(2.2, panel.withholdingTax());
}

TEST_F(EditDividendsDialogTest, TheCashAfterwardsCountsTheDividendInPlaceOfTheRecordedOne) {
  user().creditCash(Date(2026, 2, 26), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().receiveDividend({u"OLD.AX", Date(2026, 2, 27), 120.0, 0.123456, 40, 0.0, 0.0, String(), 0.0});
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  const auto cash = [&dialog] { return std::string(field(dialog, "Cash afterwards").getText().text()); };
  dialog.create();
  EXPECT_EQ("1014.81", cash());
  type(field(dialog, "On Shares Held"), "1000");
  EXPECT_EQ("1123.46", cash());
}

TEST_F(EditDividendsDialogTest, ShowsNoCashIfTheDividendHasNoCashEntry) {
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  EXPECT_FALSE(field(dialog, "Cash afterwards").getParent()->shown());
}

TEST_F(EditDividendsDialogTest, AReinvestedDividendLeavesTheCash) {
  user().creditCash(Date(2026, 2, 26), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  m_event.subElement(u"DRPShares").setValue(u"6.50");
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  EXPECT_STREQ("1000.00", field(dialog, "Cash afterwards").getText().text());
}

TEST_F(EditDividendsDialogTest, ARecordWithoutItsOptionalPartsIsShown) {
  m_event.removeSubElements(u"ForeignDividend");
  m_event.removeSubElements(u"WithholdingTax");
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  EXPECT_FALSE(dialog.panel()->isForeign());
  EXPECT_EQ(0.0, dialog.panel()->withholdingTax());
}

TEST_F(EditDividendsDialogTest, FrankingThatIsNotShownIsKept) {
  CountryOfResidence::destroyInstance();
  Settings::Instance().writeString(u"Config", u"Country", u"New Zealand");
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  EXPECT_FALSE(field(dialog, "Percent Franked").getParent()->getParent()->shown());
  EXPECT_EQ(40, dialog.panel()->percentFranked());
}

TEST_F(EditDividendsDialogTest, AllChecksApplyAndTheRecordStaysUnchanged) {
  EditDividendsDialog dialog(&mainWindow(), user(), m_event);
  whenModal(CAPTION, [&](FXWindow& form) {
    type(field(form, "Dividend Rate"), "0");
    answer("You must record the dividend rate", "OK");
    press(form, "OK");
    type(field(form, "Dividend Rate"), "0.2");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(0.2, dialog.panel()->rate());
  EXPECT_EQ(String(u"0.123456"), textValue(m_event, u"Rate"));
}

} // namespace
} // namespace Tallymoor
