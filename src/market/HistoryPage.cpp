#include "market/HistoryPage.h"
#include "foundation/Exception.h"
#include "market/FetchQuestions.h"

namespace Tallymoor {

HistoryPage HistoryPage::fetch(const DataSource& source, const String& code, const HistoryRange& range,
                               const std::stop_token& stop) {
  HistoryPage page;
  try {
    page.rows = source.history(code, range, stop);
  } catch (const Exception&) {
    page.failure = std::current_exception();
  }
  return page;
}

bool HistoryPage::isFailureOfNetwork() const {
  if (!failure)
    return false;
  try {
    std::rethrow_exception(failure);
  } catch (const HTTPException& exception) {
    return !FetchQuestions::isNotFound(exception);
  } catch (...) {
    return false;
  }
}

} // namespace Tallymoor
