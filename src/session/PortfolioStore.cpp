#include "session/PortfolioStore.h"
#include "books/UnreadableDates.h"
#include "foundation/BackgroundWriting.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "market/MarketPrices.h"
#include "session/Backups.h"
#include "session/RecordsReading.h"
#include "session/RecordsWriting.h"
#include "xml/ElementText.h"
#include <fstream>
#include <sstream>
#include <utility>

namespace Tallymoor {

namespace {

String recoveryText() {
  return String(u"An error occurred while loading your data.\n"
                u"BEFORE EXITING, please backup \"Portfolios.xml\"\n"
                u"and \"Portfolios.xml.bak\" from\n") +
         dataDirectory(Platform::Instance(), APP_NAME) +
         u".\nTo recover your data, either import your portfolio from backup now,\n"
         u"or replace the data file \"Portfolios.xml\" with \"Portfolios.xml.bak\"\n"
         u"in the above directory after exiting.\n";
}

/// A failure to save, with what the user has to know then.
class NothingLostYet : public Exception {
public:
  explicit NothingLostYet(const Exception& cause)
      : Exception(
            cause.message() +
            u"\nWhat you entered is still in Tallymoor. Mend the cause, as by making room on a full disk,\n"
            u"and save again.") {
    cause.typeName(m_typeName);
  }
  void typeName(String& text) const override { text = m_typeName; }

private:
  String m_typeName;
};

const char16_t* const OVERWRITE_QUESTION = u"Since there was a problem when you opened your\n"
                                           u"portfolio file, you may not wish to save your portfolios\n"
                                           u"as they appear now. Are you sure you want to save the\n"
                                           u"current portfolios and overwrite the existing ones\n"
                                           u"Tallymoor had a problem opening?";

const char16_t* const CHANGED_ON_DISK = u"Another program has changed your records on disk\n"
                                        u"since Tallymoor read or wrote them. What do you want\n"
                                        u"to keep? The other version stays in File, Backups.";

} // namespace

PortfolioStore::~PortfolioStore() {
  finishSaving();
}

void PortfolioStore::load() {
  try {
    withUnforeseenFailures([this] { readRecords(); });
  } catch (const Exception& exception) {
    clear();
    m_loadFailed = true;
    m_user.reportException(recoveryText(), exception);
    return;
  }
  try {
    withUnforeseenFailures([this] { m_changes.open(); });
  } catch (const Exception& exception) {
    m_user.reportException(u"The journal of your changes can't be used.\n", exception);
  }
}

void PortfolioStore::readRecords() {
  const String path = recordsPath();
  m_isFirstRun = filePresence(path) == FilePresence::Missing;
  m_onDisk = RecordsOnDisk::asRead(path);
  if (m_isFirstRun)
    return;
  readRecordsDocument(m_records, path);
  m_writtenStamps = presentStamps();
  cleanRecordNames(m_records);
  setUnreadableDatesAside(path);
  openPortfolios();
}

void PortfolioStore::setUnreadableDatesAside(const String& path) {
  const std::vector<UnreadableDate> dates = setAsideUnreadableDates(m_records);
  if (dates.empty())
    return;
  std::ostringstream content;
  content << std::ifstream(path.toUTF8(), std::ios::binary).rdbuf();
  m_user.warning(unreadableDatesText(dates, content.str()));
}

void PortfolioStore::openPortfolios() {
  for (XMLSharePortfolio& records : m_records.portfolios()) {
    auto portfolio = std::make_unique<SharePortfolioUser>(records, gatewayPrices());
    portfolio->mendOldSales();
    const String name = portfolio->name();
    m_portfolios[name] = std::move(portfolio);
  }
}

void PortfolioStore::save() {
  if (saveRecords())
    saveCapitalRecords();
}

bool PortfolioStore::saveRecords() {
  if (m_loadFailed && !m_user.question(OVERWRITE_QUESTION))
    return false;
  finishSaving(); // what it could not write is written now
  if (isChangedOnDisk() && !mayReplaceOthers())
    return false;
  const std::uint64_t lastChange = m_changes.beforeSave();
  m_lastSaveSucceeded = writeRecords();
  if (m_lastSaveSucceeded)
    m_changes.saved(lastChange);
  return m_lastSaveSucceeded;
}

bool PortfolioStore::writeRecords() {
  try {
    RecordsWriting writing;
    withUnforeseenFailures([&] {
      writing = toWrite();
      for (const auto& [name, portfolio] : m_portfolios)
        if (portfolio->capitalRecord().isModified())
          writing.capital.push_back({portfolio->capitalRecord().fileName(), std::nullopt});
      writing.write();
    });
    m_keepBackup = false;
    m_writtenStamps = presentStamps();
    m_onDisk = writing.onDisk;
    if (writing.backupFailure)
      m_user.reportException(u"Your data were saved, but not the copy of the last ones.",
                             *writing.backupFailure);
    return true;
  } catch (const Exception& exception) {
    const NothingLostYet told(exception);
    String typeName;
    told.typeName(typeName);
    m_user.reportException(
        typeName + u" occurred while saving your data. \nYou should load a previous data file.", told);
    return false;
  }
}

/// The records alone.
RecordsWriting PortfolioStore::toWrite() {
  RecordsWriting writing;
  writing.text = DocumentText(m_records, RECORDS_DTD,
                              [this](const XMLElement& portfolio) { return m_changes.knownText(portfolio); });
  if (m_keepBackup)
    writing.backup = RecordsWriting::Backup::Keep;
  else if (m_loadFailed)
    writing.backup = RecordsWriting::Backup::Spare;
  return writing;
}

std::map<String, std::uint64_t> PortfolioStore::presentStamps() const {
  std::map<String, std::uint64_t> stamps;
  for (const XMLSharePortfolio& portfolio : m_records.portfolios())
    stamps[portfolio.portfolioName()] = portfolio.changeStamp();
  return stamps;
}

// ---- Records that another hand has changed ----

bool PortfolioStore::isChangedOnDisk() {
  return !m_loadFailed && !m_saving && m_onDisk.isAnothers(recordsPath());
}

/// Asks the user. False if nothing is to be written, because he cancelled or what is in the file holds now.
bool PortfolioStore::mayReplaceOthers() {
  enum Choice : std::size_t { MINE, THEIRS, BOTH };
  m_lastSaveSucceeded = false;
  const std::optional<std::size_t> choice =
      m_user.chooseFromList(u"Records changed on disk", CHANGED_ON_DISK,
                            {u"Keep mine", u"Take theirs", u"Keep both: theirs become further portfolios"});
  if (!choice)
    return false;
  try {
    withUnforeseenFailures([&] {
      if (*choice == THEIRS)
        takeOthers();
      else
        copyFileReplacing(recordsPath(), furtherBackupPath(Date::realToday()));
      if (*choice == BOTH)
        addOthers();
    });
  } catch (const Exception& exception) {
    m_user.reportException(u"Your records were not saved, and those on disk stay as they are.\n", exception);
    return false;
  }
  m_lastSaveSucceeded = *choice == THEIRS;
  return *choice != THEIRS;
}

std::shared_ptr<XMLPortfolios> PortfolioStore::readOthers() {
  auto others = std::make_shared<XMLPortfolios>();
  readRecordsDocument(*others, recordsPath());
  cleanRecordNames(*others);
  setAsideUnreadableDates(*others);
  return others;
}

void PortfolioStore::takeOthers() {
  const RecordsOnDisk onDisk = RecordsOnDisk::asRead(recordsPath());
  const std::shared_ptr<XMLPortfolios> others = readOthers();
  const std::uint64_t lastChange = m_changes.beforeSave();
  const std::string mine = toWrite().text.text();
  replaceFile(furtherBackupPath(Date::realToday()), [&mine](std::ostream& stream) { stream << mine; });
  for (const auto& [name, portfolio] : m_portfolios)
    portfolio->capitalRecord().removeFile(); // it belongs to the others' records no more than mine do
  m_onDisk = onDisk;
  m_writtenStamps.clear();
  m_changes.saved(lastChange);
  if (m_whenOthersTaken)
    m_whenOthersTaken(others);
  else
    m_changes.replaceAll(OTHERS_TAKEN, *others);
}

/// Those that are not the same as mine.
void PortfolioStore::addOthers() {
  const std::shared_ptr<XMLPortfolios> others = readOthers();
  m_changes.make(u"Portfolios that another program had saved", [&] {
    for (XMLSharePortfolio& other : others->portfolios()) {
      const auto mine = m_portfolios.find(other.portfolioName());
      if (mine != m_portfolios.end() &&
          ElementText(mine->second->portfolio()).text() == ElementText(other).text())
        continue;
      const String name = other.portfolioName();
      for (int number = 2; m_portfolios.contains(other.portfolioName()); ++number)
        other.setPortfolioName(name + u" " + String::fromLong(number));
      addPortfolio(m_portfolios, m_records, std::unique_ptr<XMLElement>(other.clone([]() -> XMLElement* {
                     return new XMLSharePortfolio;
                   })));
    }
  });
  if (m_whenOthersTaken)
    m_whenOthersTaken(nullptr);
}

// ---- On a thread of its own ----

/// Until finishSaving(), the writing thread has it.
struct PortfolioStore::Saving {
  RecordsWriting writing;
  std::map<String, std::uint64_t> stamps;
  std::uint64_t lastChange = 0;
  std::optional<Exception> failure;
};

bool PortfolioStore::beginSaving(std::function<void()> whenWritten) {
  if (m_loadFailed || m_saving)
    return false;
  const auto saving = std::make_shared<Saving>();
  saving->lastChange = m_changes.beforeSave();
  saving->writing = toWrite();
  saving->stamps = presentStamps();
  for (const auto& [name, portfolio] : m_portfolios) {
    const auto written = m_writtenStamps.find(name);
    SharePortfolioCapitalRecordUser& record = portfolio->capitalRecord();
    if ((written == m_writtenStamps.end() || written->second != portfolio->portfolio().changeStamp()) &&
        record.isModified())
      saving->writing.capital.push_back({record.fileName(), record.takeToWrite()});
  }
  m_saving = saving;
  BackgroundWriting::begin([saving, whenWritten = std::move(whenWritten)] {
    try {
      withUnforeseenFailures([&] { saving->writing.write(); });
    } catch (const Exception& exception) {
      saving->failure = exception;
    }
    whenWritten();
  });
  return true;
}

std::optional<Exception> PortfolioStore::finishSaving() {
  if (!m_saving)
    return std::nullopt;
  BackgroundWriting::finish();
  const auto saving = std::exchange(m_saving, nullptr);
  for (const RecordsWriting::Capital& capital : saving->writing.capital)
    for (const auto& [name, portfolio] : m_portfolios)
      if (!capital.isWritten && portfolio->capitalRecord().fileName() == capital.path)
        portfolio->capitalRecord().notWritten();
  if (saving->writing.isWritten) {
    m_onDisk = saving->writing.onDisk;
    m_keepBackup = true; // it holds what was there before the user's changes
  }
  if (saving->failure)
    return saving->failure;
  m_writtenStamps = std::move(saving->stamps);
  m_changes.saved(saving->lastChange);
  return saving->writing.backupFailure;
}

void PortfolioStore::saveCapitalRecords() {
  std::optional<Exception> failure;
  for (const auto& [name, portfolio] : m_portfolios)
    try {
      withUnforeseenFailures([&record = portfolio->capitalRecord()] { record.save(); });
    } catch (const Exception& exception) {
      failure = exception;
    }
  if (failure)
    throw *failure;
}

void PortfolioStore::clear() {
  finishSaving();
  m_changes.close();
  m_portfolios.clear();
  m_records.reset();
}

} // namespace Tallymoor
