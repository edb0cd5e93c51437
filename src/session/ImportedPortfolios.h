#pragma once
#include "foundation/String.h"
#include "xml/PortfolioRecords.h"
#include <cstddef>
#include <memory>
#include <set>
#include <vector>

namespace Tallymoor {

class UserInteraction;

/// Portfolios that were read from a file of the user's choice, in the form of the records document. Each is
/// complete, with a name that a prompt would have taken, dates that can be read and no number, price,
/// brokerage, rate or tax below zero. They belong to this object. Under the big mutex.
class ImportedPortfolios {
public:
  /// The largest file that is read, in bytes: a file to import may come from anybody. The program's own
  /// exports stay far below. Thirty years in which twenty trades are made each week, and 200 stocks pay four
  /// dividends a year, are 110,000 events of 150 bytes: 17 MB.
  static constexpr std::size_t LARGEST_FILE = 64 * 1024 * 1024;
  /// Each may lead to a question.
  static constexpr std::size_t MOST_PORTFOLIOS = 1000;

  /// Reads and checks the whole file. Throws Exception when it is not a sound records document; nothing of
  /// the program has changed then.
  explicit ImportedPortfolios(const String& path);

  /// Asks for each portfolio whose name is taken, by an existing one or by one before it in the file, whether
  /// it may replace that one, and keeps those that may come in. All questions come before anything changes.
  void askForReplacements(const std::set<String>& existing, UserInteraction& user);

  /// Names of what is kept, in the order of the file; a name comes twice when the file held it twice.
  std::vector<String> names() const;
  /// Copies of what is kept, for the program to own.
  std::vector<std::unique_ptr<XMLElement>> take() const;

private:
  XMLPortfolios m_records;
  std::vector<const XMLElement*> m_kept; ///< of the records
};

/// "The following share portfolios were imported:" and the names, of many only the first.
String importSummary(const std::vector<String>& names);

} // namespace Tallymoor
