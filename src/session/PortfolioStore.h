#pragma once
#include "session/OpenPortfolios.h"
#include "session/RecordChanges.h"
#include "session/RecordsOnDisk.h"
#include "xml/PortfolioRecords.h"
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace Tallymoor {

class UserInteraction;
struct RecordsWriting;

/// Owns the records of all portfolios, and reads and writes them: "Portfolios.xml" with its ".bak", and the
/// capital records beside it. The portfolios work on the records in place, so they always go first. GUI
/// thread, under the big mutex.
class PortfolioStore {
public:
  /// The user is told of failures and asked before an old file is overwritten.
  explicit PortfolioStore(UserInteraction& user) : m_user(user) {}
  ~PortfolioStore();
  PortfolioStore(const PortfolioStore&) = delete;
  PortfolioStore& operator=(const PortfolioStore&) = delete;

  XMLPortfolios& records() { return m_records; }
  OpenPortfolios& portfolios() { return m_portfolios; }
  RecordChanges& changes() { return m_changes; }

  /// Reads the records document, and makes the changes that the journal holds since it was written. One that
  /// does not exist is a first run; whatever else goes wrong is reported with the way to recover, leaves no
  /// portfolio, and makes every save of this run ask first.
  void load();
  /// Writes the records, after a copy of the last ones, and the capital records. Failures of the records are
  /// reported here; throws Exception when a capital record can't be written. Saves nothing when the load
  /// failed and the user does not want the old file overwritten.
  void save();
  /// The first half of save(): the capital records of changed portfolios are missing until the other half,
  /// and would be computed again. False when the records were not written.
  bool saveRecords();

  /// Begins to write the records, and the capital records of portfolios that have changed since they were
  /// written, on a thread of its own. The copy of the last records is renewed only if this is the first write
  /// since the start or the last save(), so that it holds what was there before the user's changes. False,
  /// with nothing done, while that is under way and after a failed load. Throws Exception where the records
  /// can't be written as a document.
  ///
  /// The function is called on the other thread at the end; finishSaving() is then to be called soon.
  bool beginSaving(std::function<void()> whenWritten);
  /// Waits for the end of that. What could not be written, if anything.
  std::optional<Exception> finishSaving();

  /// Whether another hand has changed the records document since it was read or written here; false while
  /// beginSaving() is under way. A save then asks which version to keep, and keeps the other one as a dated
  /// copy. beginSaving() does not ask, so it is to be left alone.
  bool isChangedOnDisk();
  /// Called within a save when the user takes what another hand has saved: with records that are to replace
  /// all portfolios, under the sentence OTHERS_TAKEN, or null if further portfolios were opened.
  using OthersTaken = std::function<void(std::shared_ptr<XMLPortfolios>)>;
  static constexpr const char16_t* OTHERS_TAKEN = u"Records that another program had saved";
  void whenOthersTaken(OthersTaken taken) { m_whenOthersTaken = std::move(taken); }

  /// Whether the next save leaves the copy of the last records as it is, because it goes together with the
  /// save before: the copy then holds what was there before both.
  void keepBackup(bool keep) { m_keepBackup = keep; }

  /// True from a failed load on, for the whole run.
  bool loadFailed() const { return m_loadFailed; }
  /// True if the load has found no records at all.
  bool isFirstRun() const { return m_isFirstRun; }
  void setLoadFailed() { m_loadFailed = true; }
  /// False when the last save could not write the records.
  bool lastSaveSucceeded() const { return m_lastSaveSucceeded; }

  /// Drops the portfolios, then the records.
  void clear();

private:
  void readRecords();
  void setUnreadableDatesAside(const String& path);
  void openPortfolios();
  struct Saving;

  bool writeRecords();
  RecordsWriting toWrite();
  bool mayReplaceOthers();
  static std::shared_ptr<XMLPortfolios> readOthers();
  void takeOthers();
  void addOthers();
  std::map<String, std::uint64_t> presentStamps() const;
  void saveCapitalRecords();

  UserInteraction& m_user;
  XMLPortfolios m_records;
  OpenPortfolios m_portfolios;
  RecordChanges m_changes{m_records, m_portfolios, m_user};
  bool m_loadFailed = false;
  bool m_isFirstRun = false;
  bool m_lastSaveSucceeded = true;
  bool m_keepBackup = false;
  std::shared_ptr<Saving> m_saving;
  RecordsOnDisk m_onDisk;
  OthersTaken m_whenOthersTaken;
  std::map<String, std::uint64_t> m_writtenStamps; ///< of the portfolios as they stand in the file, by name
};

} // namespace Tallymoor
