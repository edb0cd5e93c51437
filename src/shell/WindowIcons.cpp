#include "shell/WindowIcons.h"
#include "assets/Icons.h"

namespace Tallymoor {

namespace {

// Options 0 keep the picture's own transparency.
std::unique_ptr<FXIcon> icon(FXApp* app, const unsigned char* data) {
  return std::make_unique<FXGIFIcon>(app, data, 0, 0);
}

} // namespace

WindowIcons::WindowIcons(FXApp* app)
    : big(icon(app, icons::app_big_gif)), mini(icon(app, icons::app_mini_gif)),
      banner(icon(app, icons::banner_gif)),
      tray(std::make_unique<FXGIFIcon>(app, icons::tray_gif, 0, IMAGE_KEEP)),
      newPortfolio(icon(app, icons::new_portfolio_gif)), newWatchlist(icon(app, icons::new_watchlist_gif)),
      buy(icon(app, icons::buy_gif)), sell(icon(app, icons::sell_gif)),
      dividend(icon(app, icons::dividend_gif)), interest(icon(app, icons::interest_gif)),
      deposit(icon(app, icons::deposit_gif)), withdraw(icon(app, icons::withdraw_gif)),
      report(icon(app, icons::report_gif)), priceUpdate(icon(app, icons::price_update_gif)),
      online(icon(app, icons::online_gif)), offline(icon(app, icons::offline_gif)),
      trying(icon(app, icons::trying_gif)), forwardWeek(icon(app, icons::forward_week_gif)),
      forwardDay(icon(app, icons::forward_day_gif)), backDay(icon(app, icons::back_day_gif)),
      backWeek(icon(app, icons::back_week_gif)), portfolio(icon(app, icons::portfolio_gif)),
      sharesHeld(icon(app, icons::shares_held_gif)), sharesSold(icon(app, icons::shares_sold_gif)),
      dividends(icon(app, icons::dividends_gif)), cashReserve(icon(app, icons::cash_reserve_gif)),
      watchHeld(icon(app, icons::watch_held_gif)), watchlist(icon(app, icons::watchlist_gif)) {}

void WindowIcons::create() {
  for (const auto* each :
       {&big,        &mini,       &banner,      &newPortfolio, &newWatchlist, &buy,         &sell,
        &dividend,   &interest,   &deposit,     &withdraw,     &report,       &priceUpdate, &online,
        &offline,    &trying,     &forwardWeek, &forwardDay,   &backDay,      &backWeek,    &portfolio,
        &sharesHeld, &sharesSold, &dividends,   &cashReserve,  &watchHeld,    &watchlist})
    (*each)->create();
}

} // namespace Tallymoor
