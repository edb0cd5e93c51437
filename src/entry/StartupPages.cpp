#include "entry/StartupPages.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "entry/ChoosePortfolioPanel.h"
#include "entry/FinishPanel.h"
#include "entry/GetFloatPanel.h"
#include "entry/IntroPanel.h"
#include "entry/LoopControlPanel.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/SellSharesPanel.h"
#include "entry/StartupStages.h"

namespace Tallymoor {

StartupPages::StartupPages(FX::FXComposite* parent, XMLPortfolios& records)
    : choose(new ChoosePortfolioPanel(parent, records)), intro(new IntroPanel(parent)),
      money(new GetFloatPanel(parent, String(), String())), buy(new BuySharesPanel(parent)),
      loop(new LoopControlPanel(parent)), dividend(new ReceiveDividendsPanel(parent)),
      sell(new SellSharesPanel(parent)), finish(new FinishPanel(parent)) {}

std::vector<GUIPanel*> StartupPages::all() const {
  return {intro, choose, money, loop, buy, dividend, sell, finish};
}

GUIPanel* StartupPages::entryPage(int stage) const {
  switch (stage) {
  case STAGE_HELD:
  case STAGE_BOUGHT:
    return buy;
  case STAGE_DIVIDENDS:
    return dividend;
  case STAGE_SOLD:
    return sell;
  default:
    return money;
  }
}

void StartupPages::resetEntry(const GUIPanel* page, int stage, const Date& startDate) const {
  if (page == money)
    money->reset();
  else if (page == buy) {
    buy->reset();
    buy->setPaidFromCash(stage != STAGE_HELD);
    if (stage == STAGE_HELD)
      buy->setDate(startDate);
  } else if (page == dividend)
    dividend->reset();
  else
    sell->reset();
}

void StartupPages::setPortfolio(SharePortfolioUser* portfolio) const {
  buy->setPortfolio(portfolio);
  dividend->setPortfolio(portfolio);
  sell->setPortfolio(portfolio);
}

} // namespace Tallymoor
