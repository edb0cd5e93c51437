#include "entry/TradePanel.h"
#include "books/PortfolioEvents.h"
#include "entry/Brokerage.h"
#include "entry/FormChecks.h"
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

constexpr int AMOUNT_DECIMALS = 2;
constexpr int PRICE_DECIMALS = 4;

/// What stands beside a price that a form proposes for a day.
String noteOn(const KnownPrice& price, const Date& day) {
  if (showsAsZero(price.price))
    return u"No price is known.";
  return price.day == day ? String() : u"last known, of " + price.day.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

TradePanel::TradePanel(FXComposite* parent, const String& title, const String& description,
                       const SharePortfolioUser* portfolio)
    : DatedPanel(parent, title, description), m_portfolio(portfolio) {}

void TradePanel::addTrade(FormRows& rows, const String& numberLabel, const String& dateLabel) {
  m_number = rows.addNumber(numberLabel, AMOUNT_DECIMALS, this, ID_AMOUNT);
  m_price = rows.addNumber(u"Share price", PRICE_DECIMALS, this, ID_AMOUNT);
  m_priceNote = new FXLabel(static_cast<FXComposite*>(m_price->getParent()), FXString(), nullptr,
                            JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_brokerage = rows.addNumber(u"Brokerage paid", AMOUNT_DECIMALS, this, ID_AMOUNT);
  addDate(rows, dateLabel);
}

void TradePanel::addTotals(FormRows& rows, const String& label) {
  m_total = rows.addNumber(label, AMOUNT_DECIMALS);
  m_total->makeReadOnly();
  m_cash.addTo(rows);
}

void TradePanel::addComments(FormRows& rows, const String& title) {
  m_comments = rows.addNotes(title);
}

void TradePanel::resetTrade() {
  showTrade({Date(), 0.0, 0.0, defaultBrokerage(), String()});
  m_doubt.forget();
  m_proposedPrice = m_price->text(); // the user hasn't typed it
}

void TradePanel::showTrade(const Trade& trade) {
  setDate(trade.date);
  m_number->setText(recordedNumberText(trade.number)); // a part of a purchase may need more decimals
  m_price->setValue(trade.price);
  m_brokerage->setValue(trade.brokerage);
  m_comments->setText(toFox(trade.comment));
  m_proposedPrice.clear();
  m_priceNote->setText(FXString());
  m_doubt.beginWith(*m_price, trade.date);
  m_priceDay = trade.date;
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

void TradePanel::proposePrice(const KnownPrice& price) {
  m_price->setValue(price.price);
  m_proposedPrice = m_price->text();
  m_proposedOf = price.day;
  m_priceDay = dateField()->date().value_or(Date());
  m_priceNote->setText(code().empty() ? FXString() : toFox(noteOn(price, m_priceDay)));
  showTotals();
}

void TradePanel::proposeKnownPrice() {
  if (isPriceProposed())
    proposePrice(knownPrice(code(), dateField()->date().value_or(Date()), m_portfolio));
}

void TradePanel::forgetProposedPrice() {
  if (isPriceProposed())
    proposePrice({});
  m_priceNote->setText(FXString()); // no price was looked for
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
  proposePrice(priceOfDay(code(), day, m_portfolio));
  return m_price->text() != before;
}

void TradePanel::dateChanged() {
  followDate();
}

bool TradePanel::checkProposedPrice() {
  return !followDate() || showsAsZero(price()) ||
         confirm(*m_price, proposalText() + u"\nDo you want to record this price?");
}

String TradePanel::proposalText() const {
  const String wasThat = u" was " + shortPriceText(price()) + u".";
  if (m_proposedOf == m_priceDay)
    return u"The price of " + code() + u" on " + shownDate() + wasThat;
  return u"No price of " + code() + u" on " + shownDate() + u" is known. The last one before, of " +
         m_proposedOf.toString(DATE_DISPLAY_LOCAL) + u"," + wasThat;
}

bool TradePanel::checkPriceOfDay() const {
  return m_doubt.check(*m_price, code(), date());
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
