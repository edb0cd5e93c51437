#include "entry/StockChoice.h"
#include "books/SharePortfolioUser.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <set>

namespace Tallymoor {

FXIMPLEMENT(StockChoice, FormComboBox, nullptr, 0)

namespace {

constexpr FXint MOST_VISIBLE = 12;

template <class Stock>
std::set<String> codesOf(const ElementList<Stock>& stocks) {
  std::set<String> codes;
  for (const Stock& stock : stocks)
    codes.insert(stock.code());
  return codes;
}

} // namespace

StockChoice::StockChoice(FXComposite* parent, const String& prompt, FXObject* target, FXSelector selector,
                         Stocks stocks)
    : FormComboBox(parent, target, selector, COMBOBOX_STATIC), m_prompt(toFox(prompt)), m_stocks(stocks) {
  fill(nullptr);
}

void StockChoice::fill(const SharePortfolioUser* portfolio) {
  clearItems();
  appendItem(m_prompt);
  if (portfolio)
    for (const String& code : codesOf(portfolio->portfolio().heldShares()))
      appendItem(toFox(code));
  if (portfolio && m_stocks == Stocks::HELD_AND_SOLD)
    for (const String& code : codesOf(portfolio->portfolio().soldShares()))
      add(code);
  setCurrentItem(0);
  showNoMoreThanFits();
}

void StockChoice::add(const String& code) {
  if (findItem(toFox(code)) < 0)
    appendItem(toFox(code));
  showNoMoreThanFits();
}

void StockChoice::choose(const String& code) {
  setCurrentItem(std::max(0, findItem(toFox(code))));
}

String StockChoice::code() const {
  return getCurrentItem() > 0 ? fromFox(getText()) : String();
}

void StockChoice::showNoMoreThanFits() {
  setNumVisible(std::min(getNumItems(), MOST_VISIBLE));
}

} // namespace Tallymoor
