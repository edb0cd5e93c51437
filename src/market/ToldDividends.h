#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>

namespace Tallymoor {

/// In the data folder.
inline const String TOLD_DIVIDENDS_FILE = u"ToldDividends.xml";

/// The dividends that sources have told, in a document of their own, since a source tells those of long ago
/// only once. Each waits until the user has refused it. Whether it is recorded, the records tell.
///
/// The caller holds the big mutex.
class ToldDividends {
public:
  /// Cash a share, by the day from which the share is traded without the dividend.
  using OfCode = std::map<Date, double>;

  /// A file that can't be read counts as empty, and is kept as ".bak" when it is written again.
  explicit ToldDividends(const String& fileName);

  /// Adds what is new. Where it can't be written it counts for this run.
  void add(const std::map<String, OfCode>& told);
  /// By code.
  std::map<String, OfCode> waiting() const;
  /// It is refused. Throws Exception if that can't be written; it then counts for this run.
  void settle(const String& code, const Date& day);

private:
  struct Told {
    double rate;
    bool isWaiting;
  };

  void read();
  void write();

  const String m_fileName;
  bool m_unreadable = false; ///< the file, so far
  std::map<String, std::map<Date, Told>> m_told;
};

} // namespace Tallymoor
