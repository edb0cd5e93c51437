#pragma once
#include "FocusedWidget.h"
#include "books/SharePortfolioUser.h"
#include "entry/FormComboBox.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"
#include <fxkeys.h>
#include <memory>
#include <stdexcept>

namespace Tallymoor {

/// Forms over a portfolio "Trading" of a user in Australia on 3 March 2026, offline: 100 ABC.AX were bought
/// on 25 February and 50 XYZ.AX on 2 March, and the capital record is up to date.
class PortfolioFormTest : public WindowTest {
protected:
  PortfolioFormTest() {
    CountryOfResidence::destroyInstance();
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    TallymoorInternet::Instance().goOffline();
    m_portfolio.subElement(u"Name").setValue(u"Trading");
  }
  ~PortfolioFormTest() override { CountryOfResidence::destroyInstance(); }

  void SetUp() override {
    WindowTest::SetUp();
    m_user = std::make_unique<SharePortfolioUser>(m_portfolio, gatewayPrices());
    for (Date day(2026, 2, 25); day <= Date(); day.addDays(1)) {
      TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", day, 2.5);
      TallymoorInternet::Instance().setCachedPrice(u"XYZ.AX", day, 7.25);
    }
    m_user->addBuyEvent(u"XYZ.AX", {Date(2026, 3, 2), 50.0, 7.0, 10.0, String()});
    m_user->addBuyEvent(u"ABC.AX", {Date(2026, 2, 25), 100.0, 2.0, 10.0, String()});
    updateCapitalRecord(*m_user);
  }

  SharePortfolioUser& user() { return *m_user; }
  XMLBuyEvent& parcel(const String& code) { return m_user->findHeldShare(code)->parcels()[0]; }
  /// Writes an unreadable date, so that reading the number held throws.
  void spoilParcel(const String& code) { parcel(code).subElement(u"BuyDate").setValue(u"nonsense"); }

  /// Selects an entry of a form's list, like a click.
  static void choose(FXWindow& form, const std::string& entry) {
    auto* box = find<FormComboBox>(form);
    const FXint index = box->findItem(entry.c_str());
    if (index < 0)
      throw std::runtime_error("no entry " + entry);
    box->setCurrentItem(index, TRUE);
  }
  static std::vector<std::string> entries(const FXComboBox& box) {
    std::vector<std::string> texts;
    for (FXint i = 0; i < box.getNumItems(); ++i)
      texts.emplace_back(box.getItemText(i).text());
    return texts;
  }
  /// All widgets in Tab order, from the focused one until it is reached again.
  std::vector<FXWindow*> tabStops(FXWindow& dialog) {
    std::vector<FXWindow*> stops{focused(dialog)};
    for (int i = 0; i < 40; ++i) {
      key(dialog, KEY_Tab);
      if (focused(dialog) == stops.front())
        break;
      stops.push_back(focused(dialog));
    }
    return stops;
  }
  /// Distance of a widget from the top of the dialog.
  static FXint height(FXWindow& dialog, FXWindow& widget) {
    FXint x = 0;
    FXint y = 0;
    widget.translateCoordinatesTo(x, y, &dialog, 0, 0);
    return y;
  }
  /// Checks that Tab moves down the form and ends at the buttons.
  void expectTabGoesDown(FXWindow& dialog) {
    FXint last = 0;
    const std::vector<FXWindow*> stops = tabStops(dialog);
    EXPECT_GT(stops.size(), 4u);
    for (FXWindow* stop : stops) {
      // Widgets in a row may differ by the width of a frame.
      EXPECT_GE(height(dialog, *stop) + 6, last) << stop->getClassName();
      last = height(dialog, *stop);
    }
  }

  static double storedBrokerage() { return Settings::Instance().readReal(u"Finance", u"Brokerage", 50.0); }

  MarketFixture m_market;
  GatewayScope m_gateway;
  XMLSharePortfolio m_portfolio;
  std::unique_ptr<SharePortfolioUser> m_user;
};

} // namespace Tallymoor
