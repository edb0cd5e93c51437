#include "market/CsvFolder.h"
#include "foundation/Exception.h"
#include "market/LastPrice.h"
#include "market/SourceFailure.h"
#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <utility>

namespace Tallymoor {

namespace {

/// Differs when the file is another one or has been written.
std::string stampOf(const std::string& path, const CsvAnswers& answers) {
  struct stat file {};
  if (::stat(path.c_str(), &file) != 0)
    return {};
  std::string stamp;
  for (const auto number :
       {static_cast<long long>(file.st_ino), static_cast<long long>(file.st_size),
        static_cast<long long>(file.st_mtim.tv_sec), static_cast<long long>(file.st_mtim.tv_nsec)})
    stamp += std::to_string(number) + " ";
  for (const auto& [about, answer] : answers)
    stamp += std::to_string(static_cast<int>(about)) + answer.toUTF8() + " ";
  return stamp;
}

bool isPriceFile(const std::filesystem::directory_entry& entry) {
  std::error_code failure;
  const String extension = String(entry.path().extension().c_str()).toLower();
  return entry.is_regular_file(failure) && (extension == u".csv" || extension == u".txt");
}

/// What a name has in common with its variants.
String comparable(const String& name) {
  String text = name.toLower();
  for (char16_t& unit : text)
    if (unit == u'_' || unit == u'-' || unit == u' ' || unit == u'/' || unit == u':')
      unit = u'.';
  return text;
}

/// Calls the work for each file of prices, with the code that its name says, until it returns true.
template <class Work>
void forEachFile(const std::string& folder, Work work) {
  std::error_code failure;
  for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
       entry.increment(failure))
    if (isPriceFile(*entry) && work(entry->path(), String(entry->path().stem().c_str())))
      return;
}

} // namespace

std::shared_ptr<const AnsweredHistory> CsvFolderFiles::historyIn(const std::string& path,
                                                                 const CsvAnswers& answers) {
  const std::string stamp = stampOf(path, answers);
  {
    const std::lock_guard lock(m_mutex);
    if (const auto known = m_files.find(path); known != m_files.end() && known->second.stamp == stamp)
      return known->second.history;
  }
  const String name(std::filesystem::path(path).filename().c_str());
  try {
    auto history = std::make_shared<const AnsweredHistory>(readCsv(csvBytes(path), answers));
    const std::lock_guard lock(m_mutex);
    m_files[path] = {stamp, history};
    return history;
  } catch (const AnswerException& failure) {
    throw AnswerException(failure.fault(), name + u": " + failure.message());
  }
}

void CsvFolderFiles::noteKept(const std::string& path, const CsvAnswers& answers) {
  std::string stamp = stampOf(path, answers);
  const std::lock_guard lock(m_mutex);
  m_kept[path] = std::move(stamp);
}

bool CsvFolderFiles::isKept(const std::string& path, const CsvAnswers& answers) const {
  const std::string stamp = stampOf(path, answers);
  const std::lock_guard lock(m_mutex);
  const auto kept = m_kept.find(path);
  return kept != m_kept.end() && kept->second == stamp;
}

CsvFolder::CsvFolder(const String& name, const String& folder, std::map<String, CsvAnswers> answers,
                     std::shared_ptr<CsvFolderFiles> files)
    : m_name(name), m_folder(folder.toUTF8()), m_answers(std::move(answers)), m_files(std::move(files)) {}

/// The exact name goes before a variant. Of several variants none counts: one of them may be another stock.
std::string CsvFolder::fileOf(const String& code) const {
  std::string exact;
  std::string variant;
  std::size_t variants = 0;
  forEachFile(m_folder, [&](const std::filesystem::path& path, const String& stem) {
    if (stem == code)
      exact = path;
    else if (comparable(stem) == comparable(code)) {
      variant = path;
      ++variants;
    }
    return !exact.empty();
  });
  if (!exact.empty())
    return exact;
  return variants == 1 ? variant : std::string();
}

std::string CsvFolder::requireFile(const String& code) const {
  std::string path = fileOf(code);
  if (path.empty())
    throw SourceException(SourceFault::NoPrice, u"it has no file for " + code);
  return path;
}

const CsvAnswers& CsvFolder::answersFor(const std::string& path) const {
  static const CsvAnswers NONE;
  const auto ofFile = m_answers.find(String(std::filesystem::path(path).filename().c_str()));
  if (ofFile != m_answers.end())
    return ofFile->second;
  const auto ofAll = m_answers.find(String());
  return ofAll != m_answers.end() ? ofAll->second : NONE;
}

std::vector<PriceFile> CsvFolder::files() const {
  std::vector<PriceFile> all;
  forEachFile(m_folder, [&](const std::filesystem::path& path, const String&) {
    PriceFile& file = all.emplace_back();
    file.name = String(path.filename().c_str());
    try {
      const std::string bytes = csvBytes(path);
      file.doubts = csvFormat(bytes, answersFor(path)).doubts;
      if (file.doubts.empty())
        readCsv(bytes, answersFor(path));
    } catch (const Exception& failure) {
      file.failure = failure.message();
    }
    return false;
  });
  std::ranges::sort(all, {}, &PriceFile::name);
  return all;
}

bool CsvFolder::hasNewHistory(const String& code) const {
  const std::string path = fileOf(code);
  return !path.empty() && !m_files->isKept(path, answersFor(path));
}

std::optional<AnsweredPrice> CsvFolder::currentPrice(const String& code, const std::stop_token&) const {
  const std::string path = requireFile(code);
  return lastPrice(*m_files->historyIn(path, answersFor(path)));
}

/// A file that can't be read is tried again when it has changed.
AnsweredHistory CsvFolder::history(const String& code, const HistoryRange& range,
                                   const std::stop_token&) const {
  const std::string path = requireFile(code);
  m_files->noteKept(path, answersFor(path));
  AnsweredHistory history = *m_files->historyIn(path, answersFor(path));
  dropAfter(history, range.end);
  return history;
}

void CsvFolder::search(const String& text, bool, bool, std::vector<CodeSearchResult>& results,
                       const std::stop_token&) const {
  forEachFile(m_folder, [&](const std::filesystem::path&, const String& stem) {
    if (comparable(stem).contains(comparable(text)))
      results.push_back({stem, stem, m_name}); // a result without a name is shown nowhere
    return false;
  });
}

} // namespace Tallymoor
