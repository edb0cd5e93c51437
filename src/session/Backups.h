#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tallymoor {

class XMLPortfolios;

// Dated copies of the records document in "Data/Backups", named "Portfolios 2026-03-03.xml": one a day, of
// the records before the first write of that day. Further ones of a day have a number behind it. The last ten
// days that have any are kept, and the first day of each month for a year.

/// What the user is shown of a copy.
struct Backup {
  String path;
  Date day;
  std::uint64_t bytes = 0;
  bool isReadable = false; ///< if not, what follows is empty
  std::vector<String> portfolios;
  std::size_t transactions = 0; ///< purchases that are held, sales, dividends and cash entries
};

/// Copies the records if there is no copy of that day yet, and drops copies that are not kept any longer.
/// Records that are missing give no copy. The file has mode 0600, the folder 0700. Any thread. Throws
/// Exception when the copy can't be written.
void keepBackupOfDay(const String& recordsPath, const Date& day);

/// A name for a further copy of that day; the folder is made.
String furtherBackupPath(const Date& day);

/// All of them, the newest first; each is read.
std::vector<Backup> listBackups();

} // namespace Tallymoor
