#include "entry/StockChoice.h"
#include "engine/SharePortfolioUser.h"
#include "widgets/ToolkitText.h"
#include "xml/Leaves.h"
#include <algorithm>
#include <set>

namespace Tallymoor {

FXIMPLEMENT(StockChoice, FormComboBox, nullptr, 0)

namespace {

constexpr FXint mostVisible = 12;

/// The reference name is both that of the list and of what stands in it.
std::set<String> codesIn(const SharePortfolioUser& portfolio, std::u16string_view list) {
  std::set<String> codes;
  const XMLElement& shares = portfolio.portfolio().subElement(list);
  for (std::size_t i = 0; i < shares.numSubElements(list); ++i)
    codes.insert(textValue(shares.subElement(list, i), u"Code"));
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
    for (const String& code : codesIn(*portfolio, u"HeldShares"))
      appendItem(toFox(code));
  if (portfolio && m_stocks == Stocks::HELD_AND_SOLD)
    for (const String& code : codesIn(*portfolio, u"SoldShares"))
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
  setNumVisible(std::min(getNumItems(), mostVisible));
}

} // namespace Tallymoor
