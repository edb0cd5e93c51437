#include "views/WrongDates.h"
#include "books/SharePortfolioUser.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

void tellOfWrongDates(const SharePortfolioUser& portfolio, const std::vector<WrongDate>& wrong) {
  for (const WrongDate& date : wrong)
    MainWindow::error(u"Portfolio " + portfolio.name() + u" has a " + date.kind + u"\n" + date.event +
                      u"\nthat is " + date.fault + u", and must be corrected.");
}

} // namespace Tallymoor
