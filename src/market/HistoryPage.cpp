#include "market/HistoryPage.h"
#include "foundation/Exception.h"

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

} // namespace Tallymoor
