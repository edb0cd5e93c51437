#include "views/EventDates.h"
#include "books/SharePortfolioUser.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

void tellOfWrongDate(const SharePortfolioUser& portfolio, const String& kind, const String& event,
                     const String& fault) {
  MainWindow::error(u"Portfolio " + portfolio.name() + u" has a " + kind + u"\n" + event + u"\nthat is " +
                    fault + u", and must be corrected.");
}

} // namespace Tallymoor
