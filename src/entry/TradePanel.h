#pragma once
#include "books/Trade.h"
#include "entry/CashRow.h"
#include "entry/DatedPanel.h"
#include "entry/KnownPrice.h"
#include "entry/PriceDoubt.h"
#include <optional>

namespace Tallymoor {

class NumberField;
class SharePortfolioUser;

/// What the forms for a purchase and for a sale have in common: the number of shares, their price, the
/// brokerage, the day and the user's comments; the total, which the contract note has too, and the cash that
/// is there afterwards.
///
/// The price that a form proposes is that of the form's day, and follows it until the user types another one.
/// Where that is unavailable it is the last one known, and a note beside the field says of which day.
class TradePanel : public DatedPanel {
  FXDECLARE_ABSTRACT(TradePanel)
public:
  enum { ID_AMOUNT = DatedPanel::ID_LAST, ID_LAST };

  /// The portfolio is only read, and must outlive the form; null while there is none yet.
  TradePanel(FXComposite* parent, const String& title, const String& description,
             const SharePortfolioUser* portfolio);

  /// Of the stock that is traded; empty while there is none.
  virtual String code() const = 0;
  double number() const;
  double price() const;
  double brokerage() const;
  String comments() const;
  /// All of it; throws Exception when the date is none.
  Trade trade() const { return {date(), number(), price(), brokerage(), comments()}; }

  /// A number was typed: the total follows.
  long onAmount(FXObject*, FXSelector, void*);

protected:
  TradePanel() {}
  /// What the contract note comes to; negative where the brokerage of a sale is more than it brings.
  virtual double total() const = 0;
  /// What the trade brings into the cash reserve; negative for what it takes.
  virtual double cashEffect() const = 0;
  void addTrade(FormRows& rows, const String& numberLabel, const String& dateLabel);
  /// The rows of the total, under this label, and of the cash.
  void addTotals(FormRows& rows, const String& label);
  void addComments(FormRows& rows, const String& title);
  /// Nothing bought or sold yet, the default brokerage, today, no comments.
  void resetTrade();
  void showTrade(const Trade& trade);
  /// What is in the cash reserve without the trade. Nothing, which is how a form begins, hides the row.
  void setCashBefore(std::optional<double> cash) { m_cash.setBefore(cash); }
  /// A price that is not the user's own, for the form's day; the note says so when it is of another, or when
  /// none is known.
  void proposePrice(const KnownPrice& price);
  /// What is known without asking anyone; a price that the user typed himself stays.
  void proposeKnownPrice();
  /// The stock is another one: a price that was proposed for the one before goes.
  void forgetProposedPrice();
  void dateChanged() override;
  /// Where the user has just typed another day, the proposed price is that day's now, and he is asked about
  /// it.
  bool checkProposedPrice();
  /// Asks about a price that is far from that of the day, unless it stood in the form already.
  bool checkPriceOfDay() const;
  /// Refuses a negative brokerage, asks whether there really was none, and whether another one than the
  /// default is the new default.
  bool checkBrokerage(const String& noneQuestion, const String& defaultQuestion) const;

  NumberField* numberField() const { return m_number; }
  NumberField* priceField() const { return m_price; }

  const SharePortfolioUser* m_portfolio = nullptr;

private:
  bool isPriceProposed() const;
  bool followDate();
  String proposalText() const;
  void showTotals();

  NumberField* m_number = nullptr;
  NumberField* m_price = nullptr;
  FXLabel* m_priceNote = nullptr; ///< beside the price
  NumberField* m_brokerage = nullptr;
  NumberField* m_total = nullptr;
  CashRow m_cash;
  String m_proposedPrice; ///< the field's text; empty when it is the user's own
  Date m_proposedOf;      ///< the day that the proposed price is of
  Date m_priceDay;        ///< the form's day when the price was proposed or shown
  PriceDoubt m_doubt;
  FXText* m_comments = nullptr;
};

} // namespace Tallymoor
