#include "views/PriceImport.h"
#include "foundation/UserInteraction.h"
#include "market/PriceStatus.h"
#include "market/TallymoorInternet.h"
#include "views/SourceActions.h"
#include "widgets/FileChoice.h"
#include <filesystem>

namespace Tallymoor {

namespace {

String daysText(std::size_t days) {
  return String::fromLong(static_cast<std::int64_t>(days)) + (days == 1 ? u" day" : u" days");
}

String importText(const String& code, const PriceStatus::Import& import) {
  if (import.days == 0)
    return u"The file has no day with a price up to today.";
  String text = daysText(import.days) + u" of " + code +
                (import.days == 1 ? u" was read, from " : u" were read, from ") +
                import.first.toString(DATE_DISPLAY_LOCAL) + u" to " +
                import.last.toString(DATE_DISPLAY_LOCAL) + u".\nThe close of " + daysText(import.changed) +
                u" is new or has changed.";
  if (import.passedOver > 0)
    text += u"\n" + String::fromLong(static_cast<std::int64_t>(import.passedOver)) +
            u" rows without a day or a price were passed over.";
  return text;
}

} // namespace

void importPrices(FXWindow* owner, const String& code) {
  const String path =
      chooseFile(owner, u"Import prices of " + code, u"Tables (*.csv,*.txt)\nAll Files (*)\n");
  if (path.empty() || !mayEndSample())
    return;
  PriceStatus& status = TallymoorInternet::Instance().priceStatus();
  CsvAnswers answers;
  PriceStatus::Import import = status.importFile(code, path, answers);
  if (!import.doubts.empty()) {
    const String name(std::filesystem::path(path.toUTF8()).filename().c_str());
    if (!askDoubts(name, import.doubts, answers))
      return;
    import = status.importFile(code, path, answers);
  }
  UserInteraction::Instance().information(importText(code, import));
}

} // namespace Tallymoor
