#include "session/Backups.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/UnforeseenFailure.h"
#include "session/RecordsReading.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <sys/stat.h>

namespace Tallymoor {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view PREFIX = "Portfolios ";
constexpr std::string_view SUFFIX = ".xml";
constexpr std::size_t LENGTH_OF_DAY = 10; // 2026-03-03
constexpr std::size_t DAYS_KEPT = 10;
constexpr int MONTHS_KEPT = 12;
constexpr mode_t FOLDER_MODE = 0700;

std::string folder() {
  return (dataDirectory(Platform::Instance(), APP_NAME) + u"Backups").toUTF8();
}

std::string dayName(const Date& day) {
  const auto digits = [](int number, std::size_t count) {
    const std::string text = std::to_string(number);
    return std::string(count - std::min(count, text.size()), '0') + text;
  };
  return digits(day.year(), 4) + "-" + digits(day.month(), 2) + "-" + digits(day.day(), 2);
}

std::string pathOf(const Date& day) {
  return folder() + "/" + std::string(PREFIX) + dayName(day) + std::string(SUFFIX);
}

/// Nothing for a file of another name.
std::optional<Date> dayOf(std::string_view name) {
  if (!name.starts_with(PREFIX) || !name.ends_with(SUFFIX) || name.size() < PREFIX.size() + LENGTH_OF_DAY)
    return std::nullopt;
  const std::string_view text = name.substr(PREFIX.size(), LENGTH_OF_DAY);
  const auto number = [text](std::size_t place, std::size_t length) {
    int value = 0;
    std::from_chars(text.data() + place, text.data() + place + length, value);
    return value;
  };
  const int month = number(5, 2), day = number(8, 2);
  if (month < 1 || month > 12 || day < 1 || day > 31)
    return std::nullopt;
  const Date date(number(0, 4), month, day);
  return dayName(date) == text ? std::optional(date) : std::nullopt;
}

void makeFolder() {
  const std::string path = folder();
  if (::mkdir(path.c_str(), FOLDER_MODE) != 0 && errno != EEXIST)
    throw Exception(u"Backups - cannot make the folder " + String::fromUTF8(path) + u": " +
                    String(std::strerror(errno)));
}

/// By day; what can't be listed is not there.
std::multimap<Date, fs::path> files() {
  std::multimap<Date, fs::path> found;
  std::error_code failed;
  for (fs::directory_iterator file(folder(), failed), end; !failed && file != end; file.increment(failed))
    if (const auto day = dayOf(file->path().filename().string()))
      found.emplace(*day, file->path());
  return found;
}

/// Those of the last days, and the first of each month of the year before today.
std::set<Date> keptDays(const std::multimap<Date, fs::path>& files, const Date& today) {
  std::set<Date> days;
  for (const auto& [day, path] : files)
    days.insert(day);
  std::set<Date> kept;
  for (auto day = days.rbegin(); day != days.rend() && kept.size() < DAYS_KEPT; ++day)
    kept.insert(*day);
  std::set<std::pair<int, int>> months;
  for (const Date& day : days)
    if (months.emplace(day.year(), day.month()).second && day >= today.plusMonths(-MONTHS_KEPT))
      kept.insert(day);
  return kept;
}

void dropOld(const Date& today) {
  const auto all = files();
  const std::set<Date> kept = keptDays(all, today);
  for (const auto& [day, path] : all)
    if (!kept.contains(day)) {
      std::error_code failed; // the next day tries again
      fs::remove(path, failed);
    }
}

std::size_t transactionsOf(const XMLSharePortfolio& portfolio) {
  std::size_t count = portfolio.dividends().size() + portfolio.cashEvents().size();
  for (const XMLHeldShare& share : portfolio.heldShares())
    count += share.parcels().size();
  for (const XMLSoldShare& share : portfolio.soldShares())
    count += share.sales().size();
  return count;
}

Backup read(const Date& day, const fs::path& path) {
  Backup backup;
  backup.path = String::fromUTF8(path.string());
  backup.day = day;
  std::error_code unknown;
  if (const std::uintmax_t bytes = fs::file_size(path, unknown); !unknown)
    backup.bytes = bytes;
  try {
    withUnforeseenFailures([&backup] {
      XMLPortfolios records;
      readRecordsDocument(records, backup.path);
      for (const XMLSharePortfolio& portfolio : records.portfolios()) {
        backup.portfolios.push_back(portfolio.portfolioName());
        backup.transactions += transactionsOf(portfolio);
      }
    });
    backup.isReadable = true;
  } catch (const Exception&) {
    backup.portfolios.clear();
    backup.transactions = 0;
  }
  return backup;
}

} // namespace

void keepBackupOfDay(const String& recordsPath, const Date& day) {
  const String copy = String::fromUTF8(pathOf(day));
  // Not by the list of all, which may fail: a copy that is there must never be replaced by a later state.
  const FilePresence presence = filePresence(copy);
  if (filePresence(recordsPath) == FilePresence::Missing || presence == FilePresence::RegularFile)
    return;
  if (presence == FilePresence::Unusable)
    throw Exception(u"Backups - cannot use " + copy);
  makeFolder();
  copyFileReplacing(recordsPath, copy);
  dropOld(day);
}

String furtherBackupPath(const Date& day) {
  makeFolder();
  const std::string first = pathOf(day);
  std::string path = first;
  for (int number = 2; fs::exists(fs::symlink_status(path)); ++number)
    path = first.substr(0, first.size() - SUFFIX.size()) + " (" + std::to_string(number) + ")" +
           std::string(SUFFIX);
  return String::fromUTF8(path);
}

std::vector<Backup> listBackups() {
  std::vector<Backup> backups;
  for (const auto& [day, path] : files())
    backups.push_back(read(day, path));
  std::stable_sort(backups.begin(), backups.end(), [](const Backup& a, const Backup& b) {
    return a.day != b.day ? b.day < a.day : b.path < a.path;
  });
  return backups;
}

} // namespace Tallymoor
