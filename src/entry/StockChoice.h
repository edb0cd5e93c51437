#pragma once
#include "entry/FormComboBox.h"
#include "foundation/String.h"

namespace Tallymoor {

class SharePortfolioUser;

/// A drop-down list of the stocks that a portfolio holds, in alphabetical order, and behind them, if wanted,
/// those that were sold altogether; the first entry asks for a choice and counts as none. A long list
/// scrolls.
class StockChoice : public FormComboBox {
  FXDECLARE(StockChoice)
public:
  enum class Stocks { HELD, HELD_AND_SOLD };

  /// The prompt is the first entry, as "<select stock code>".
  StockChoice(FXComposite* parent, const String& prompt, FXObject* target, FXSelector selector,
              Stocks stocks = Stocks::HELD);

  /// Fills the list again, with nothing chosen; without a portfolio only the prompt is in it.
  void fill(const SharePortfolioUser* portfolio);
  /// Puts a code at the end of the list unless it is there.
  void add(const String& code);
  /// A code that is not in the list leaves the prompt chosen.
  void choose(const String& code);
  /// Empty when nothing is chosen.
  String code() const;

protected:
  StockChoice() {}

private:
  void showNoMoreThanFits();
  FXString m_prompt;
  Stocks m_stocks = Stocks::HELD;
};

} // namespace Tallymoor
