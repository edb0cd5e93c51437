#include "entry/TradePanel.h"
#include "engine/PortfolioEvents.h"
#include "entry/Brokerage.h"
#include "entry/FormChecks.h"
#include "foundation/Amounts.h"
#include "widgets/FormRows.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT(TradePanel, DatedPanel, nullptr, 0)

namespace {

constexpr int amountDecimals = 2;
constexpr int priceDecimals = 4;

} // namespace

TradePanel::TradePanel(FXComposite* parent, const String& title, const String& description)
    : DatedPanel(parent, title, description) {}

void TradePanel::addTrade(FormRows& rows, const String& numberLabel, const String& dateLabel) {
  m_number = rows.addNumber(numberLabel, amountDecimals);
  m_price = rows.addNumber(u"Share price", priceDecimals);
  m_brokerage = rows.addNumber(u"Brokerage paid", amountDecimals);
  addDate(rows, dateLabel);
}

void TradePanel::addComments(FormRows& rows, const String& title) {
  m_comments = rows.addNotes(title);
}

void TradePanel::resetTrade() {
  showTrade(Date(), 0.0, 0.0, defaultBrokerage(), String());
}

void TradePanel::showTrade(const Date& date, double number, double price, double brokerage,
                           const String& comments) {
  setDate(date);
  m_number->setText(recordedNumberText(number)); // a part of a purchase may need more decimals
  m_price->setValue(price);
  m_brokerage->setValue(brokerage);
  m_comments->setText(toFox(comments));
}

bool TradePanel::checkBrokerage(const String& noneQuestion, const String& defaultQuestion) const {
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
