#include "entry/Brokerage.h"
#include "foundation/Amounts.h"
#include "foundation/Settings.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

constexpr const char16_t* section = u"Finance";
constexpr const char16_t* key = u"Brokerage";
/// Until the user chooses one.
constexpr double firstDefault = 50.0;

} // namespace

double defaultBrokerage() {
  return Settings::Instance().readReal(section, key, firstDefault);
}

void offerAsDefaultBrokerage(double brokerage, const String& question) {
  if (showsTheSame(brokerage, defaultBrokerage(), 2) || !MainWindow::question(question))
    return;
  Settings::Instance().writeReal(section, key, brokerage);
  Settings::Instance().commitIfPossible(); // the trade itself must not suffer
}

} // namespace Tallymoor
