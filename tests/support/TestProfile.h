#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "support/StringPrinting.h"
#include <map>
#include <optional>
#include <string>

namespace Tallymoor {

/// A user of his own for a test: a scratch folder as home and data folder, a platform with a chosen locale, a
/// fixed today with no view date, settings in memory, and no desktop session. The end of the scope puts
/// everything back and removes the folder. One at a time, made while no thread runs.
class TestProfile {
public:
  /// Today is 3 March 2026.
  explicit TestProfile(const std::string& locale = "en_AU");
  TestProfile(const std::string& locale, const Date& today);
  ~TestProfile();
  TestProfile(const TestProfile&) = delete;
  TestProfile& operator=(const TestProfile&) = delete;

  /// The scratch folder, which is $HOME, without a trailing separator.
  const std::string& folder() const { return m_folder; }
  String path(const std::string& name) const;
  /// The folder of default documents ("Config" and "Report" below it), made at the first call.
  std::string defaultsFolder() const;

  void setLocale(const std::string& locale);
  void setToday(const Date& today);

  /// Folders of the product, each with a trailing separator.
  String dataFolder() const;
  String configFolder() const;
  String cacheFolder() const;
  String reportFolder() const;

  /// Makes the folders above a file, too.
  static void writeFile(const String& path, const std::string& content);
  /// Fails the test and gives an empty text when there is no such file.
  static std::string readFile(const String& path);
  static bool fileExists(const String& path);

private:
  void setEnvironment(const char* name, const std::string& value);

  std::string m_folder;
  std::map<std::string, std::optional<std::string>> m_environment; ///< what stood there before
};

} // namespace Tallymoor
