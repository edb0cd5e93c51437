#pragma once
#include "books/DividendEntry.h"
#include "entry/CashRow.h"
#include "entry/DatedPanel.h"
#include "entry/DividendOrigin.h"
#include "entry/DividendPayment.h"
#include "entry/StockChoice.h"
#include "widgets/NumberField.h"
#include <cstdint>

namespace Tallymoor {

class NumberSpinner;
class SharePortfolioUser;
class FormTextField;
class XMLDividendEvent;

/// The form for one dividend: on how many shares and at what rate, how far it was franked, where it comes
/// from, and whether it was paid in cash or reinvested in new shares.
class ReceiveDividendsPanel : public DatedPanel {
  FXDECLARE(ReceiveDividendsPanel)
public:
  enum { ID_CODE = DatedPanel::ID_LAST, ID_RECOMPUTE, ID_CASH, ID_DRP, ID_LAST };

  /// The portfolio is only read, and must outlive the form; null while there is none yet.
  explicit ReceiveDividendsPanel(FXComposite* parent, const SharePortfolioUser* portfolio = nullptr,
                                 const String& initialCode = String());

  /// Another portfolio: every field goes back to its initial value.
  void setPortfolio(const SharePortfolioUser* portfolio);
  /// Every field to its initial value, with the stocks to choose from that are held now or were sold: a
  /// dividend may come after the sale. A code that is passed in is chosen, with all its shares.
  void reset(const String& initialCode = String());
  /// Fills in what is known of a dividend of the chosen stock.
  void propose(double number, double rate, const Date& day);
  /// The fields of a recorded dividend; its stock can be chosen although it may not be held any more. Where
  /// its cash entry is not found, the row of the cash is hidden.
  void showDividend(const XMLDividendEvent& dividendEvent);

  bool validate() override;
  /// The first field that there is something to do in, which has the focus when the form opens.
  FXWindow* firstField() const;

  /// Empty when none is chosen.
  String code() const { return m_code->code(); }
  double numHeld() const { return m_held->value(); }
  /// For each share.
  double rate() const { return m_rate->value(); }
  /// 0 to 100.
  std::int32_t percentFranked() const;
  /// Number held times rate, not rounded.
  double value() const;
  double frankingCredit() const;
  bool isForeign() const { return m_origin.isForeign(); }
  /// Empty for a domestic dividend, and while none is entered.
  String country() const { return m_origin.country(); }
  double withholdingTax() const { return m_origin.withholdingTax(); }
  bool isReinvested() const { return m_payment.isReinvested(); }
  /// These two are 0 for a payment in cash.
  double sharesReceived() const { return m_payment.shares(); }
  double sharePrice() const { return m_payment.sharePrice(); }
  /// All of it; throws Exception when the date is none.
  DividendEntry entry() const;

  /// A stock was chosen: fills in the number held, or the one that was sold last.
  long onListChanged(FXObject*, FXSelector, void*);
  long onRadioCash(FXObject*, FXSelector, void*);
  long onRadioDRP(FXObject*, FXSelector, void*);
  /// A number or the foreign check changed: the computed fields follow.
  long onRecompute(FXObject*, FXSelector, void*);

protected:
  ReceiveDividendsPanel() {}
  /// The fields of the new shares, with their labels.
  virtual void enablePaymentFields(bool reinvested) { m_payment.enableShares(reinvested); }

private:
  bool checkFranking() const;

  void buildHoldingRows(FormRows& rows);
  void buildValueRows(FormRows& rows);
  void buildFrankingRow(FXHorizontalFrame& row);
  void showFranking();
  void proposeFranking();
  void showHolding();
  void recompute();
  void showPayment();
  void showCash();

  const SharePortfolioUser* m_portfolio = nullptr;
  StockChoice* m_code = nullptr;
  FormTextField* m_name = nullptr;
  NumberField* m_held = nullptr;
  NumberField* m_rate = nullptr;
  NumberSpinner* m_percentFranked = nullptr;
  bool m_frankingTyped = false; ///< by the user, now or when it was recorded: nothing is proposed then
  NumberField* m_value = nullptr;
  NumberField* m_frankingCredit = nullptr;
  DividendOrigin m_origin;
  DividendPayment m_payment;
  CashRow m_cashAfter;
};

} // namespace Tallymoor
