#include "entry/TradePanel.h"
#include "engine/PortfolioEvents.h"
#include "entry/Brokerage.h"
#include "entry/FormChecks.h"
#include "entry/KnownPrice.h"
#include "foundation/Amounts.h"
#include "widgets/DateField.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(TradePanel)
TradePanelMap[] = {
    FXMAPFUNC(SEL_CHANGED, TradePanel::ID_AMOUNT, TradePanel::onAmount),
};

FXIMPLEMENT_ABSTRACT(TradePanel, DatedPanel, TradePanelMap, ARRAYNUMBER(TradePanelMap))

namespace {

constexpr int amountDecimals = 2;
constexpr int priceDecimals = 4;

} // namespace

TradePanel::TradePanel(FXComposite* parent, const String& title, const String& description)
    : DatedPanel(parent, title, description) {}

void TradePanel::addTrade(FormRows& rows, const String& numberLabel, const String& dateLabel) {
  m_number = rows.addNumber(numberLabel, amountDecimals, this, ID_AMOUNT);
  m_price = rows.addNumber(u"Share price", priceDecimals, this, ID_AMOUNT);
  m_priceNote = new FXLabel(static_cast<FXComposite*>(m_price->getParent()), FXString(), nullptr,
                            JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_brokerage = rows.addNumber(u"Brokerage paid", amountDecimals, this, ID_AMOUNT);
  addDate(rows, dateLabel);
}

void TradePanel::addTotals(FormRows& rows, const String& label) {
  m_total = rows.addNumber(label, amountDecimals);
  m_total->makeReadOnly();
  m_cash.addTo(rows);
}

void TradePanel::addComments(FormRows& rows, const String& title) {
  m_comments = rows.addNotes(title);
}

void TradePanel::resetTrade() {
  showTrade(Date(), 0.0, 0.0, defaultBrokerage(), String());
  m_shownPrice.clear();
  proposePrice(0.0);
}

void TradePanel::showTrade(const Date& date, double number, double price, double brokerage,
                           const String& comments) {
  setDate(date);
  m_number->setText(recordedNumberText(number)); // a part of a purchase may need more decimals
  m_price->setValue(price);
  m_brokerage->setValue(brokerage);
  m_comments->setText(toFox(comments));
  m_proposedPrice.clear();
  m_priceNote->setText(FXString());
  m_shownPrice = m_price->text();
  m_priceDay = date;
  showTotals();
}

// ---- Total and cash ----

void TradePanel::showTotals() {
  m_total->setValue(total());
  m_cash.showEffect(cashEffect());
}

long TradePanel::onAmount(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TradePanel::onAmount failed.", [this] {
    if (!isPriceProposed())
      m_priceNote->setText(FXString());
    showTotals();
  });
}

// ---- The price of the day ----

void TradePanel::proposePrice(double price) {
  m_price->setValue(price);
  m_proposedPrice = m_price->text();
  m_priceDay = dateField()->date().value_or(Date());
  m_priceNote->setText(showsAsZero(price) && !code().empty() ? "No price is known." : "");
  showTotals();
}

void TradePanel::proposeNoPrice() {
  if (isPriceProposed())
    proposePrice(0.0);
}

void TradePanel::forgetProposedPrice() {
  proposeNoPrice();
  m_priceNote->setText(FXString()); // nobody has looked
}

bool TradePanel::isPriceProposed() const {
  return m_price->text() == m_proposedPrice;
}

/// True when that has changed the price.
bool TradePanel::followDate() {
  const Date day = date();
  if (code().empty() || day == m_priceDay || !isPriceProposed())
    return false;
  const String before = m_price->text();
  proposePrice(priceOfDay(code(), day));
  return !(m_price->text() == before);
}

void TradePanel::dateChanged() {
  followDate();
}

bool TradePanel::checkProposedPrice() {
  return !followDate() || showsAsZero(price()) ||
         confirm(*m_price, u"The price of " + code() + u" on " + shownDate() + u" was " +
                               shortPriceText(price()) + u".\nDo you want to record this price?");
}

bool TradePanel::checkPriceOfDay() const {
  const Date day = date();
  const bool isRecorded = m_price->text() == m_shownPrice && day == m_priceDay;
  if (isRecorded || showsAsZero(price()))
    return true;
  const double known = priceOfDay(code(), day);
  return showsAsZero(known) || !isFarFrom(price(), known) ||
         confirm(*m_price, u"The price of " + shortPriceText(price()) + u" is far from that of " + code() +
                               u" on " + shownDate() + u", which was " + shortPriceText(known) +
                               u".\nDo you want to record it all the same?");
}

bool TradePanel::checkBrokerage(const String& noneQuestion, const String& defaultQuestion) const {
  if (!requireNotNegative(*m_brokerage, u"The brokerage paid"))
    return false;
  if (showsAsZero(brokerage()) && !confirm(*m_brokerage, noneQuestion))
    return false;
  offerAsDefaultBrokerage(brokerage(), defaultQuestion);
  return true;
}

double TradePanel::number() const {
  return m_number->value();
}

double TradePanel::price() const {
  return m_price->value();
}

double TradePanel::brokerage() const {
  return m_brokerage->value();
}

String TradePanel::comments() const {
  return fromFox(m_comments->getText());
}

} // namespace Tallymoor
