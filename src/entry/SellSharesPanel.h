#pragma once
#include "entry/TradePanel.h"

namespace Tallymoor {

class SharePortfolioUser;
class FormTextField;
class StockChoice;

/// The form for one sale out of the shares that a portfolio holds.
class SellSharesPanel : public TradePanel {
  FXDECLARE(SellSharesPanel)
public:
  enum { ID_CODE = TradePanel::ID_LAST, ID_LAST };

  /// The portfolio is only read, and must outlive the form; null while there is none yet.
  explicit SellSharesPanel(FXComposite* parent, const SharePortfolioUser* portfolio = nullptr,
                           const String& initialCode = String());

  /// Another portfolio: every field goes back to its initial value.
  void setPortfolio(const SharePortfolioUser* portfolio);
  /// Every field to its initial value, with the stocks that are held now to choose from. A held code that is
  /// passed in is chosen, with all its shares and the price that is known of it.
  void reset(const String& initialCode = String());

  bool validate() override;
  /// The first field that there is something to do in, which has the focus when the form opens.
  FXWindow* firstField() const;

  /// Empty when none is chosen.
  String code() const override;

  /// A stock was chosen: fills in its price today and all shares held.
  long onListChanged(FXObject*, FXSelector, void*);

protected:
  SellSharesPanel() {}
  double total() const override;
  double cashEffect() const override;

private:
  void showHolding(const KnownPrice& price);
  bool checkCode() const;
  bool checkHeldOnDate() const;
  bool checkNumber() const;
  bool checkPrice() const;

  StockChoice* m_code = nullptr;
  FormTextField* m_name = nullptr;
};

} // namespace Tallymoor
