#include "views/DoubtWarnings.h"
#include "market/TallymoorInternet.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

constexpr int WARNING = 1;

String keyOf(const String& code) {
  return u"doubtful price of " + code;
}

} // namespace

DoubtWarnings::DoubtWarnings(FX::FXApp* app) : m_wakeUp(app, [this] { tell(); }) {
  TallymoorInternet::Instance().setDoubtWatcher([this] { m_wakeUp.wake(); });
  m_wakeUp.wake(); // for those of before
}

DoubtWarnings::~DoubtWarnings() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().setDoubtWatcher(nullptr);
}

void DoubtWarnings::tell() {
  guardedHandler(u"DoubtWarnings::tell failed.", [this] {
    const auto doubtful = TallymoorInternet::Instance().doubtfulPrices();
    for (auto code = m_told.begin(); code != m_told.end();)
      if (doubtful.contains(*code)) {
        ++code;
      } else {
        MainWindow::Instance().warningOver(keyOf(*code));
        code = m_told.erase(code);
      }
    for (const auto& [code, prices] : doubtful)
      if (m_told.insert(code).second)
        MainWindow::Instance().warnOnce(
            doubtText(code, prices.rbegin()->second) +
                u"\nThe last good price counts until you decide in Tools, Prices.",
            u"Doubtful price", keyOf(code), WARNING);
  });
}

} // namespace Tallymoor
