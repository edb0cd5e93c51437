#include "session/UnappliedRecords.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "foundation/UnforeseenFailure.h"
#include "session/Backups.h"
#include "session/RecordsReading.h"
#include "session/Recovery.h"
#include "xml/DocumentFile.h"
#include "xml/ElementText.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <optional>
#include <utility>

namespace Tallymoor {

namespace {

XMLElement* newRecords() {
  return new XMLPortfolios;
}

/// The newest first.
std::vector<String> copiesOfRecords() {
  std::vector<String> paths{dataDirectory(Platform::Instance(), APP_NAME) + PORTFOLIOS_FILE + u".bak"};
  for (const Backup& backup : listBackups())
    if (backup.isReadable)
      paths.push_back(backup.path);
  return paths;
}

/// Nothing for a copy that can't be read.
std::vector<Replay::Portfolio> portfoliosIn(const String& path) {
  std::vector<Replay::Portfolio> portfolios;
  try {
    withUnforeseenFailures([&] {
      XMLPortfolios records;
      readRecordsDocument(records, path);
      for (XMLSharePortfolio& portfolio : records.portfolios())
        portfolios.push_back({portfolio.portfolioName(), ElementText(portfolio).text()});
    });
  } catch (const Exception&) {
    portfolios.clear();
  }
  return portfolios;
}

std::string textOf(std::vector<Replay::Portfolio> portfolios,
                   const std::vector<RestoredPortfolio>& restored) {
  for (const RestoredPortfolio& wanted : restored) {
    const auto former = std::find_if(portfolios.begin(), portfolios.end(), [&wanted](const auto& portfolio) {
      return !wanted.nameNow.empty() && portfolio.name == wanted.nameNow;
    });
    if (wanted.nameThen.empty())
      portfolios.erase(former);
    else if (former == portfolios.end())
      portfolios.push_back({wanted.nameThen, wanted.text});
    else
      former->text = wanted.text;
  }
  std::string text = "<Portfolios>";
  for (const Replay::Portfolio& portfolio : portfolios)
    text += portfolio.text;
  return text + "</Portfolios>";
}

String keep(const std::string& text) {
  XMLPortfolios records;
  records.decode(text.c_str());
  String path = furtherBackupPath(Date());
  saveDocument(path, records, RECORDS_DTD, newRecords);
  return path;
}

} // namespace

String keepUnappliedRecords(Journal& journal, bool isDamaged) {
  std::vector<Change> changes;
  for (const Journal::Entry& entry : journal.changes())
    changes.push_back(journal.read(entry));
  for (const String& path : copiesOfRecords()) {
    const std::vector<Replay::Portfolio> portfolios = portfoliosIn(path);
    if (portfolios.empty())
      continue;
    if (const std::optional<Recovery> recovery = Recovery::of(changes, portfolios, isDamaged))
      return keep(textOf(portfolios, recovery->portfolios));
  }
  return String();
}

} // namespace Tallymoor
