#pragma once
#include "market/CsvFile.h"
#include "market/PriceProvider.h"
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace Tallymoor {

/// The CSV files of a folder as they were last read. Shared by all copies of a source, on any thread.
class CsvFolderFiles {
public:
  /// The file's history, read anew when the file has changed. Throws AnswerException or Exception with the
  /// name of the file.
  std::shared_ptr<const AnsweredHistory> historyIn(const std::string& path, const CsvAnswers& answers);
  /// Notes that the file, as it is now, has been given to somebody who keeps its history.
  void noteKept(const std::string& path, const CsvAnswers& answers);
  bool isKept(const std::string& path, const CsvAnswers& answers) const;

private:
  struct Read {
    std::string stamp; ///< of the file and of the answers by which it was read
    std::shared_ptr<const AnsweredHistory> history;
  };

  mutable std::mutex m_mutex; ///< guards the maps
  std::map<std::string, Read> m_files;
  std::map<std::string, std::string> m_kept; ///< the stamps of kept files
};

/// A CSV file of a folder, and whether it can be read.
struct PriceFile {
  String name;
  std::vector<FormatDoubt> doubts; ///< questions to the user; it gives no prices before they are answered
  String failure;                  ///< why it can't be read; empty if it can
};

/// A folder with a CSV file of past prices for each stock, as a source. Every request looks at the file
/// itself, so that a change is seen at once.
///
/// The file of a code bears its name with ".csv" or ".txt" behind it; case does not count, and where a code
/// has a point or another sign, the name may have "_", "-" or a blank: "abc_ax.csv" for ABC.AX.
class CsvFolder : public PriceProvider {
public:
  /// The answers are by the name of a file; those of an empty name hold for all others.
  CsvFolder(const String& name, const String& folder, std::map<String, CsvAnswers> answers,
            std::shared_ptr<CsvFolderFiles> files);

  /// All files, sorted by name, as they are now.
  std::vector<PriceFile> files() const;

  const String& name() const override { return m_name; }
  bool serves(const String& code) const override { return !fileOf(code).empty(); }
  bool hasNewHistory(const String& code) const override;
  /// The last close of the file.
  std::optional<AnsweredPrice> currentPrice(const String& code, const std::stop_token& stop) const override;
  AnsweredHistory history(const String& code, const HistoryRange& range,
                          const std::stop_token& stop) const override;
  /// Files whose names hold the text.
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop) const override;

private:
  std::string fileOf(const String& code) const;
  /// Throws SourceException if the code has no file.
  std::string requireFile(const String& code) const;
  const CsvAnswers& answersFor(const std::string& path) const;

  String m_name;
  std::string m_folder;
  std::map<String, CsvAnswers> m_answers;
  std::shared_ptr<CsvFolderFiles> m_files;
};

} // namespace Tallymoor
