#pragma once
#include <vector>

namespace FX {
class FXComposite;
}

namespace Tallymoor {

class BuySharesPanel;
class ChoosePortfolioPanel;
class Date;
class FinishPanel;
class GUIPanel;
class GetFloatPanel;
class IntroPanel;
class LoopControlPanel;
class ReceiveDividendsPanel;
class SellSharesPanel;
class SharePortfolioUser;
class XMLPortfolios;

/// The pages of the StartupWizard; the toolkit owns them.
struct StartupPages {
  StartupPages() = default;
  StartupPages(FX::FXComposite* parent, XMLPortfolios& records);

  /// In the order of the wizard.
  std::vector<GUIPanel*> all() const;
  /// The form of a StartupStage.
  GUIPanel* entryPage(int stage) const;
  /// A form goes back to its initial values.
  void resetEntry(const GUIPanel* page, int stage, const Date& startDate) const;
  /// For the forms that look at a portfolio; null for none.
  void setPortfolio(SharePortfolioUser* portfolio) const;

  ChoosePortfolioPanel* choose = nullptr;
  IntroPanel* intro = nullptr;
  GetFloatPanel* money = nullptr;
  BuySharesPanel* buy = nullptr;
  LoopControlPanel* loop = nullptr;
  ReceiveDividendsPanel* dividend = nullptr;
  SellSharesPanel* sell = nullptr;
  FinishPanel* finish = nullptr;
};

} // namespace Tallymoor
