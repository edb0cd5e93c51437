#include "support/TestProfile.h"
#include "foundation/Constants.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace Tallymoor {

namespace {

std::string makeScratchFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "tallymoor-test-XXXXXX").string();
  if (!::mkdtemp(pattern.data()))
    throw std::filesystem::filesystem_error("mkdtemp", pattern, std::make_error_code(std::errc::io_error));
  return pattern;
}

void resetSettings() {
  Settings::attach(nullptr);
  for (const String& section : Settings::Instance().sections(String()))
    Settings::Instance().deleteSection(section); // Left in memory by an earlier test.
  readSettings();
}

} // namespace

TestProfile::TestProfile(const std::string& locale) : TestProfile(locale, Date(2026, 3, 3)) {}

TestProfile::TestProfile(const std::string& locale, const Date& today) : m_folder(makeScratchFolder()) {
  setEnvironment("HOME", m_folder);
  setEnvironment("XDG_DATA_HOME", m_folder + "/share");
  // Isolates the test from the desktop session it runs in.
  setEnvironment("DBUS_SESSION_BUS_ADDRESS", "disabled:");
  setEnvironment("SESSION_MANAGER", "");
  setLocale(locale);
  Date::clearFixedDate();
  setToday(today);
  resetSettings();
}

TestProfile::~TestProfile() {
  Platform::setInstance(nullptr);
  Date::clearFixedDate();
  Clock::setToday(0);
  resetSettings();
  for (const auto& [name, value] : m_environment) {
    if (value)
      ::setenv(name.c_str(), value->c_str(), 1);
    else
      ::unsetenv(name.c_str());
  }
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

String TestProfile::path(const std::string& name) const {
  return String((m_folder + "/" + name).c_str());
}

std::string TestProfile::defaultsFolder() const {
  const std::string folder = m_folder + "/program/defaults";
  std::filesystem::create_directories(folder + "/Config");
  std::filesystem::create_directories(folder + "/Report");
  return folder;
}

void TestProfile::setLocale(const std::string& locale) {
  LinuxPlatformOptions options;
  options.dataHome = m_folder + "/share";
  options.locale = locale;
  options.programFolder = m_folder + "/program";
  Platform::setInstance(std::make_unique<LinuxPlatform>(options));
}

void TestProfile::setToday(const Date& today) {
  Clock::setToday(today.julianDay());
}

String TestProfile::dataFolder() const {
  return dataDirectory(Platform::Instance(), APP_NAME);
}

String TestProfile::configFolder() const {
  return configDirectory(Platform::Instance(), APP_NAME);
}

String TestProfile::cacheFolder() const {
  return cacheDirectory(Platform::Instance(), APP_NAME);
}

String TestProfile::reportFolder() const {
  return reportDirectory(Platform::Instance(), APP_NAME);
}

void TestProfile::writeFile(const String& path, const std::string& content) {
  const std::filesystem::path file = path.toUTF8();
  std::filesystem::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << content;
  ASSERT_TRUE(out.flush()) << file;
}

std::string TestProfile::readFile(const String& path) {
  std::ifstream in(path.toUTF8(), std::ios::binary);
  EXPECT_TRUE(in.is_open()) << path.toUTF8();
  return std::string(std::istreambuf_iterator<char>(in), {});
}

bool TestProfile::fileExists(const String& path) {
  std::error_code ignored;
  return std::filesystem::exists(path.toUTF8(), ignored);
}

void TestProfile::setEnvironment(const char* name, const std::string& value) {
  const char* before = std::getenv(name);
  m_environment[name] = before ? std::optional<std::string>(before) : std::nullopt;
  ::setenv(name, value.c_str(), 1);
}

} // namespace Tallymoor
