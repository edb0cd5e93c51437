#pragma once
#include "books/DividendEntry.h"
#include "entry/CashRow.h"
#include "entry/DatedPanel.h"
#include "entry/PriceDoubt.h"
#include <cstdint>

namespace Tallymoor {

class FormComboBox;
class NumberField;
class NumberSpinner;
class SharePortfolioUser;
class FormTextField;
class StockChoice;
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
  /// The fields of a recorded dividend; its stock can be chosen although it may not be held any more. Where
  /// its cash entry is not found, nothing is told of the cash.
  void showDividend(const XMLDividendEvent& dividendEvent);

  bool validate() override;
  /// The first field that there is something to do in, which has the focus when the form opens.
  FXWindow* firstField() const;

  /// Empty when none is chosen.
  String code() const;
  double numHeld() const;
  /// For each share.
  double rate() const;
  /// 0 to 100.
  std::int32_t percentFranked() const;
  /// Number held times rate, not rounded.
  double value() const;
  double frankingCredit() const;
  bool isForeign() const;
  /// Empty for a domestic dividend, and while none is entered.
  String country() const;
  double withholdingTax() const;
  bool isReinvested() const;
  /// These two are 0 for a payment in cash.
  double sharesReceived() const;
  double sharePrice() const;
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
  virtual void enablePaymentFields(bool reinvested);

private:
  bool checkFranking() const;
  bool checkOrigin() const;
  bool checkPayment() const;

  void buildHoldingRows(FormRows& rows);
  void buildValueRows(FormRows& rows);
  void buildFrankingRow(FXHorizontalFrame& row);
  void buildForeignRows(FormRows& rows);
  void buildPaymentRows(FormRows& rows);
  void fillCountries();
  void showFranking();
  void proposeFranking();
  void showHolding();
  void recompute();
  void payInCash();
  void reinvest();
  void showCash();

  const SharePortfolioUser* m_portfolio = nullptr;
  StockChoice* m_code = nullptr;
  FormTextField* m_name = nullptr;
  NumberField* m_held = nullptr;
  NumberField* m_rate = nullptr;
  NumberSpinner* m_percentFranked = nullptr;
  bool m_frankingTyped = false; ///< or recorded: it is the user's, and no longer ours to propose
  NumberField* m_value = nullptr;
  NumberField* m_frankingCredit = nullptr;
  FXCheckButton* m_foreign = nullptr;
  FormComboBox* m_country = nullptr;
  NumberField* m_withholdingTax = nullptr;
  FXRadioButton* m_cash = nullptr;
  FXRadioButton* m_drp = nullptr;
  FXLabel* m_sharesLabel = nullptr;
  NumberField* m_shares = nullptr;
  FXLabel* m_sharePriceLabel = nullptr;
  NumberField* m_sharePrice = nullptr;
  PriceDoubt m_sharePriceDoubt;
  CashRow m_cashAfter;
};

} // namespace Tallymoor
