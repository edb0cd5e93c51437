#pragma once
#include "entry/TradePanel.h"

namespace Tallymoor {

class FormTextField;
class SharePortfolioUser;

/// The form for one purchase of shares.
class BuySharesPanel : public TradePanel {
  FXDECLARE(BuySharesPanel)
public:
  enum { ID_SEARCH_CODE = TradePanel::ID_LAST, ID_CODE, ID_LAST };

  /// The portfolio is only read, and must outlive the form; null while there is none yet.
  explicit BuySharesPanel(FXComposite* parent, const SharePortfolioUser* portfolio = nullptr);

  /// Another portfolio: every field goes back to its initial value.
  void setPortfolio(const SharePortfolioUser* portfolio);
  /// Shares that were there from the beginning take nothing from the cash.
  void setPaidFromCash(bool paid);

  /// Every field to its initial value: today, the default brokerage, and for a code the price that is known
  /// of it.
  void reset(const String& initialCode = String());
  /// The fields of a recorded purchase; its code can't be changed. Its cash is what is in the cash reserve
  /// without it; nothing for a purchase that took none.
  void showPurchase(const String& code, const Trade& purchase,
                    std::optional<double> cashBefore = std::nullopt);

  bool validate() override;
  /// The first field that takes typing, which has the focus when the form opens.
  FXWindow* firstField() const;

  /// Without blanks around it.
  String code() const override;
  String name() const;

  long onSearchCode(FXObject*, FXSelector, void*);
  /// A code that is typed has not been searched for: the name is the one that is known from before, if any.
  long onCodeTyped(FXObject*, FXSelector, void*);

protected:
  BuySharesPanel() {}
  double total() const override;
  double cashEffect() const override;

private:
  void buildStockRows(FormRows& rows);
  void showFoundStock(const String& code, const String& name);
  bool checkNumbers() const;
  bool checkCode() const;
  bool checkMarket() const;
  void showCash();

  bool m_paidFromCash = true;
  FormTextField* m_code = nullptr;
  FormTextField* m_name = nullptr;
};

} // namespace Tallymoor
