#include "entry/EditSoldShareDialog.h"
#include "books/CashBalance.h"
#include "books/PortfolioEvents.h"
#include "books/SaleCash.h"
#include "books/SplitTerms.h"
#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "foundation/Amounts.h"
#include "foundation/KeptTexts.h"
#include "foundation/Platform.h"
#include "market/StockNames.h"
#include "widgets/CalendarDialog.h"
#include "widgets/DateField.h"
#include "widgets/FormRows.h"
#include "widgets/GUIPanel.h"
#include "widgets/HandlerScope.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXDEFMAP(EditSoldShareDialog)
EditSoldShareDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, EditSoldShareDialog::ID_CHOOSE_BUY_DATE, EditSoldShareDialog::onChooseBuyDate),
    FXMAPFUNC(SEL_COMMAND, EditSoldShareDialog::ID_CHOOSE_SELL_DATE, EditSoldShareDialog::onChooseSellDate),
    FXMAPFUNC(SEL_CHANGED, EditSoldShareDialog::ID_AMOUNT, EditSoldShareDialog::onAmount),
};

FXIMPLEMENT(EditSoldShareDialog, Dialog, EditSoldShareDialogMap, ARRAYNUMBER(EditSoldShareDialogMap))

namespace {

constexpr int AMOUNT_DECIMALS = 2;
constexpr int PRICE_DECIMALS = 4;

String captionFor(const Date& sellDate) {
  return u"Edit share sold on " + sellDate.toString(DATE_DISPLAY_LOCAL);
}

/// What would be in the cash reserve now, and whether that leaves out the purchase, too.
struct CashWithout {
  std::optional<double> before;
  bool changesCost = false;
};

/// Nothing where the sale has no entry in the cash; nor after a split, by which the recorded price and so the
/// cost may be rounded.
CashWithout cashWithout(const XMLSellEvent& sale) {
  const XMLSharePortfolio* portfolio = portfolioOf(sale);
  if (!portfolio || !sale.adjustments().empty())
    return {};
  const XMLCashEvent* proceeds = findProceeds(*portfolio, sale, sale.number());
  if (!proceeds || !(proceedsOf(sale, sale.number()) > 0.0))
    return {};
  CashWithout cash{cashBalance(*portfolio, Date()) - effectOnBalance(*proceeds, Date())};
  if (const XMLCashEvent* cost = findCost(*portfolio, sale)) {
    *cash.before -= effectOnBalance(*cost, Date());
    cash.changesCost = true;
  }
  return cash;
}

} // namespace

EditSoldShareDialog::EditSoldShareDialog() = default;

EditSoldShareDialog::EditSoldShareDialog(FXWindow* owner, const XMLSellEvent& sellEvent)
    : Dialog(owner, captionFor(sellEvent.sold()), String()), m_icons(std::make_unique<FormIcons>(getApp())) {
  FormRows rows(contents());
  buildAmountRows(rows);
  buildBrokerageRows(rows);
  buildDateRows(rows);
  buildTotalRows(rows);
  rows.align();
  m_comments = rows.addNotes(u"Sale reasons, comments, indicators");
  show(sellEvent);
  setFirstFocus(m_number);
}

EditSoldShareDialog::~EditSoldShareDialog() = default;

void EditSoldShareDialog::buildAmountRows(FormRows& rows) {
  m_code = rows.addReadOnly(u"Stock Code");
  m_name = rows.addName(u"Stock name");
  m_number = rows.addNumber(u"Number sold", AMOUNT_DECIMALS, this, ID_AMOUNT);
  m_buyPrice = rows.addNumber(u"Buy price", PRICE_DECIMALS, this, ID_AMOUNT);
  m_sellPrice = rows.addNumber(u"Sell price", PRICE_DECIMALS, this, ID_AMOUNT);
}

void EditSoldShareDialog::buildBrokerageRows(FormRows& rows) {
  m_buyBrokerage = rows.addNumber(u"Buy Brokerage paid", AMOUNT_DECIMALS, this, ID_AMOUNT);
  m_sellBrokerage = rows.addNumber(u"Sell Brokerage paid", AMOUNT_DECIMALS, this, ID_AMOUNT);
  m_totalBrokerage = rows.addNumber(u"TOTAL brokerage paid", AMOUNT_DECIMALS);
  m_totalBrokerage->makeReadOnly();
}

void EditSoldShareDialog::buildDateRows(FormRows& rows) {
  m_buyDate = addDateRow(rows, u"Date bought", *m_icons, this, ID_CHOOSE_BUY_DATE);
  m_sellDate = addDateRow(rows, u"Date sold", *m_icons, this, ID_CHOOSE_SELL_DATE);
}

void EditSoldShareDialog::buildTotalRows(FormRows& rows) {
  m_received = rows.addNumber(u"Total received", AMOUNT_DECIMALS);
  m_received->makeReadOnly();
  m_cash.addTo(rows);
}

void EditSoldShareDialog::show(const XMLSellEvent& sellEvent) {
  m_code->setText(sellEvent.code());
  m_name->setText(StockNames::nameOf(sellEvent.code()));
  const SharesAt sold = sharesAsSold(sellEvent);
  m_number->setText(recordedNumberText(sold.number));
  m_buyPrice->setValue(sold.price);
  m_sellPrice->setValue(sellEvent.sellPrice());
  m_buyBrokerage->setValue(sellEvent.brokerage());
  m_sellBrokerage->setValue(sellEvent.sellBrokerage());
  m_buyDate->setDate(sellEvent.bought());
  m_sellDate->setDate(sellEvent.sold());
  m_comments->setText(toFox(sellEvent.comment()));
  m_buyPriceIsOfItsDay = !isSplitBy(sellEvent, sellEvent.sold());
  m_buyPriceDoubt.beginWith(*m_buyPrice, buyDate());
  m_sellPriceDoubt.beginWith(*m_sellPrice, sellDate());
  const CashWithout cash = cashWithout(sellEvent);
  m_changesCost = cash.changesCost;
  m_cash.setBefore(cash.before);
  showTotals();
}

void EditSoldShareDialog::showTotals() {
  const double received = number() * sellPrice() - sellBrokerage();
  const double paid = number() * buyPrice() + buyBrokerage();
  m_totalBrokerage->setValue(buyBrokerage() + sellBrokerage());
  m_received->setValue(received);
  m_cash.showEffect(m_changesCost ? received - paid : received);
}

bool EditSoldShareDialog::validate() {
  return GUIPanel::runChecks(
      [this] { return checkNumbers() && checkBrokerages() && checkDates() && checkPricesOfDays(); });
}

bool EditSoldShareDialog::checkNumbers() const {
  if (!requirePositive(*m_number, u"You must select the number of shares sold.") ||
      !requirePositive(*m_buyPrice, u"You must enter the price you bought the shares") ||
      !requireNotNegative(*m_sellPrice, u"The sell price"))
    return false;
  return !showsAsZero(sellPrice()) ||
         confirm(*m_sellPrice, u"Do you really want to record a sell price of " +
                                   Platform::Instance().currencyFormat(sellPrice()) + u"?");
}

bool EditSoldShareDialog::checkBrokerages() const {
  if (!requireNotNegative(*m_buyBrokerage, u"The buy brokerage") ||
      !requireNotNegative(*m_sellBrokerage, u"The sell brokerage"))
    return false;
  if (showsAsZero(buyBrokerage()) &&
      !confirm(*m_buyBrokerage, u"Are you sure there was no buy brokerage charged\nfor this purchase?"))
    return false;
  return !showsAsZero(sellBrokerage()) ||
         confirm(*m_sellBrokerage, u"Are you sure there was no sell brokerage charged\nfor this purchase?");
}

bool EditSoldShareDialog::checkDates() const {
  if (!requireNotInFuture(*m_sellDate, u"You can't specify a sell date in the future.") ||
      !requireNotInFuture(*m_buyDate, u"You can't specify a buy date in the future."))
    return false;
  return sellDate() >= buyDate() || refuse(*m_sellDate, u"The sell date is before the buy date!");
}

bool EditSoldShareDialog::checkPricesOfDays() const {
  return (!m_buyPriceIsOfItsDay || m_buyPriceDoubt.check(*m_buyPrice, code(), buyDate())) &&
         m_sellPriceDoubt.check(*m_sellPrice, code(), sellDate());
}

String EditSoldShareDialog::code() const {
  return m_code->text();
}

double EditSoldShareDialog::number() const {
  return m_number->value();
}

double EditSoldShareDialog::buyPrice() const {
  return m_buyPrice->value();
}

double EditSoldShareDialog::sellPrice() const {
  return m_sellPrice->value();
}

double EditSoldShareDialog::buyBrokerage() const {
  return m_buyBrokerage->value();
}

double EditSoldShareDialog::sellBrokerage() const {
  return m_sellBrokerage->value();
}

Date EditSoldShareDialog::buyDate() const {
  return dateIn(*m_buyDate);
}

Date EditSoldShareDialog::sellDate() const {
  return dateIn(*m_sellDate);
}

String EditSoldShareDialog::comments() const {
  return fromFox(m_comments->getText());
}

SaleEntry EditSoldShareDialog::entry() const {
  return {buyDate(),   sellDate(),     number(),        buyPrice(),
          sellPrice(), buyBrokerage(), sellBrokerage(), comments()};
}

// Both failures are reported under the name of the form for sales, which users know them by.

long EditSoldShareDialog::onChooseBuyDate(FXObject*, FXSelector, void*) {
  return guardedHandler(kept::DATE_OF_PURCHASE, [this] { chooseDate(this, *m_buyDate); });
}

long EditSoldShareDialog::onChooseSellDate(FXObject*, FXSelector, void*) {
  return guardedHandler(kept::DATE_OF_SALE, [this] { chooseDate(this, *m_sellDate); });
}

long EditSoldShareDialog::onAmount(FXObject*, FXSelector, void*) {
  return guardedHandler(u"EditSoldShareDialog::onAmount failed.", [this] { showTotals(); });
}

} // namespace Tallymoor
