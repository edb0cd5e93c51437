#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "support/StringPrinting.h"
#include <map>
#include <optional>
#include <string>

namespace Tallymoor {

/// A separate user for a test: a scratch folder as home and data folder, a platform with a fixed locale, a
/// fixed current day without a view date, settings in memory and no desktop session. The destructor restores
/// everything and removes the folder. Only one may exist, and it must be created while no thread runs.
class TestProfile {
public:
  /// Sets the current day to 3 March 2026.
  explicit TestProfile(const std::string& locale = "en_AU");
  TestProfile(const std::string& locale, const Date& today);
  ~TestProfile();
  TestProfile(const TestProfile&) = delete;
  TestProfile& operator=(const TestProfile&) = delete;

  /// The scratch folder ($HOME) without a trailing separator.
  const std::string& folder() const { return m_folder; }
  String path(const std::string& name) const;
  /// The folder of default documents with "Config" and "Report" in it. Created at the first call.
  std::string defaultsFolder() const;

  void setLocale(const std::string& locale);
  void setToday(const Date& today);

  /// The product's folders, each with a trailing separator.
  String dataFolder() const;
  String configFolder() const;
  String cacheFolder() const;
  String reportFolder() const;

  /// Also creates the folders above the file.
  static void writeFile(const String& path, const std::string& content);
  /// Fails the test and returns an empty text if the file is missing.
  static std::string readFile(const String& path);
  static bool fileExists(const String& path);

private:
  void setEnvironment(const char* name, const std::string& value);

  std::string m_folder;
  std::map<std::string, std::optional<std::string>> m_environment; ///< The previous values.
};

} // namespace Tallymoor
