#include "views/ToldDividendWarning.h"
#include "analysis/UnrecordedDividends.h"
#include "market/TallymoorInternet.h"
#include "widgets/MainWindow.h"
#include <utility>

namespace Tallymoor {

namespace {

constexpr int WARNING = 1;
const String KEY = u"told dividends";

} // namespace

ToldDividendWarning::ToldDividendWarning(FX::FXApp* app, OpenPortfolioList portfolios)
    : m_portfolios(std::move(portfolios)),
      m_prices(app, u"ToldDividendWarning::tell failed.", [this](const std::set<String>& codes) {
        if (codes.empty()) // a round has ended
          tell();
      }) {}

void ToldDividendWarning::tell() {
  const auto told = TallymoorInternet::Instance().toldDividends();
  const std::size_t count = told.empty() ? 0 : unrecordedDividends(m_portfolios(), told).size();
  MainWindow& window = MainWindow::Instance();
  if (count == 0)
    return window.warningOver(KEY);
  const String dividends = count == 1
                               ? String(u"1 dividend that is")
                               : String::fromLong(static_cast<std::int64_t>(count)) + u" dividends that are";
  window.warnOnce(u"Your sources of prices tell of " + dividends +
                      u" not recorded: see Tools, Told Dividends.",
                  u"Told dividends", KEY, WARNING);
}

} // namespace Tallymoor
