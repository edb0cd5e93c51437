#include "entry/Brokerage.h"
#include "foundation/Amounts.h"
#include "foundation/Settings.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

namespace {

constexpr const char16_t* SECTION = u"Finance";
constexpr const char16_t* KEY = u"Brokerage";
/// Until the user chooses one.
constexpr double FIRST_DEFAULT = 50.0;

} // namespace

double defaultBrokerage() {
  return Settings::Instance().readReal(SECTION, KEY, FIRST_DEFAULT);
}

void offerAsDefaultBrokerage(double brokerage, const String& question) {
  if (showsTheSame(brokerage, defaultBrokerage(), 2) || !MainWindow::question(question))
    return;
  Settings::Instance().writeReal(SECTION, KEY, brokerage);
  Settings::Instance().commitIfPossible(); // the trade itself must not suffer
}

} // namespace Tallymoor
