#include "views/PriceWatch.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

PriceWatch::PriceWatch(FX::FXApp* app, const String& context, Handler handler)
    : m_context(context), m_handler(std::move(handler)), m_wakeUp(app, [this] { tell(); }) {
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
}

PriceWatch::~PriceWatch() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
}

void PriceWatch::currentPriceUpdated(const String& code, double) {
  m_codes.insert(code);
  m_wakeUp.wake();
}

void PriceWatch::pricesUpdateFinished() {
  m_wakeUp.wake();
}

void PriceWatch::historicalPriceChanged(const String& code, const Date&, double) {
  m_codes.insert(code);
  m_wakeUp.wake();
}

void PriceWatch::historyArrived(const String& code) {
  m_codes.insert(code);
  m_wakeUp.wake();
}

void PriceWatch::tell() {
  BackgroundPassScope pass;
  std::set<String> codes;
  codes.swap(m_codes);
  try {
    m_handler(codes);
  } catch (const Exception& exception) {
    UserInteraction::Instance().reportException(m_context, exception);
  }
}

} // namespace Tallymoor
