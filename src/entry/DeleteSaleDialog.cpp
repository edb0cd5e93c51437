#include "entry/DeleteSaleDialog.h"
#include "books/PortfolioEvents.h"
#include "books/SaleDeletion.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/MessageLayout.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXDEFMAP(DeleteSaleDialog)
DeleteSaleDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, DeleteSaleDialog::ID_GIVE_BACK, DeleteSaleDialog::onChoose),
    FXMAPFUNC(SEL_COMMAND, DeleteSaleDialog::ID_DELETE_PURCHASE, DeleteSaleDialog::onChoose),
};

FXIMPLEMENT(DeleteSaleDialog, Dialog, DeleteSaleDialogMap, ARRAYNUMBER(DeleteSaleDialogMap))

namespace {

String captionFor(const XMLSellEvent& sale) {
  return u"Delete the sale of " + sale.code() + u" on " + sale.sold().toString(DATE_DISPLAY_LOCAL);
}

String money(double value) {
  return Platform::Instance().currencyFormat(value);
}

/// "Cash: 20/02/2026, SELL 100.00 of ABC.AX @ 12.5000, $1,230.00 is removed."
String removal(const SaleDeletion::CashLine& line) {
  return u"\nCash: " + line.day.toString(DATE_DISPLAY_LOCAL) + u", " + line.description + u", " +
         money(line.value) + u" is removed.";
}

String ofProceeds(const SaleDeletion& deletion) {
  return deletion.proceeds ? removal(*deletion.proceeds)
                           : u"\nCash: an entry of " + money(deletion.proceedsValue) +
                                 u" for this sale was not found. Look for it in \"Cash Reserve\".";
}

/// "The 100.00 shares, bought on 02/02/2026 at 10.00,"
String shares(const SaleDeletion& deletion) {
  return u"The " + numberText(deletion.number) + u" shares, bought on " +
         deletion.bought.toString(DATE_DISPLAY_LOCAL) + u" at " + shortPriceText(deletion.buyPrice) + u",";
}

String ofGivingBack(const SaleDeletion& deletion) {
  return shares(deletion) +
         (deletion.rest ? u" go back to the rest of their purchase." : u" are held again.") +
         ofProceeds(deletion) + u"\nCash: what their purchase cost stays paid.";
}

String ofDeletingThePurchase(const SaleDeletion& deletion) {
  const String cost = deletion.cost ? removal(*deletion.cost)
                                    : u"\nCash: the cost of these shares, " + money(deletion.costValue) +
                                          u", has no entry of its own. What was paid stays.";
  return shares(deletion) + u" leave the records as if they had never been bought." + ofProceeds(deletion) +
         cost;
}

String fitted(const String& text, const FXFont& font) {
  constexpr int WIDTH = 560;
  constexpr std::size_t LINES = 12;
  return fittedMessage(text, {[&font](const String& line) { return font.getTextWidth(toFox(line)); },
                              scaledToText(WIDTH), LINES});
}

} // namespace

DeleteSaleDialog::DeleteSaleDialog(FXWindow* owner, const XMLSellEvent& sale)
    : Dialog(owner, captionFor(sale), String()) {
  const SaleDeletion deletion(sale);
  m_giveBack = addChoice(ID_GIVE_BACK, u"Give the shares back", ofGivingBack(deletion));
  m_deletePurchase =
      addChoice(ID_DELETE_PURCHASE, u"Delete their purchase too", ofDeletingThePurchase(deletion));
  choose(ID_GIVE_BACK);
  setFirstFocus(m_giveBack);
}

FXRadioButton* DeleteSaleDialog::addChoice(FXSelector selector, const String& title,
                                           const String& consequences) {
  auto* button = new FXRadioButton(contents(), labelText(title), this, selector);
  constexpr FXint INDENT = 24, BELOW = 10;
  new FXLabel(contents(), labelText(fitted(consequences, *MainWindow::Instance().normalFont())), nullptr,
              JUSTIFY_LEFT, 0, 0, 0, 0, scaledToText(INDENT), 0, 0, BELOW);
  return button;
}

void DeleteSaleDialog::choose(FXSelector selector) {
  m_giveBack->setCheck(selector == ID_GIVE_BACK);
  m_deletePurchase->setCheck(selector == ID_DELETE_PURCHASE);
}

long DeleteSaleDialog::onChoose(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"DeleteSaleDialog::onChoose failed.",
                        [this, selector] { choose(FXSELID(selector)); });
}

} // namespace Tallymoor
