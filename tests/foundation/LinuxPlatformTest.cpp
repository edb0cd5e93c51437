#include "foundation/LinuxPlatform.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/VersionRecord.h"
#include "support/FileMode.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

TALLYMOOR_VERSION_RECORD("4.3.2.1");

namespace Tallymoor {
namespace {

class LinuxPlatformTest : public testing::Test {
protected:
  static std::unique_ptr<LinuxPlatform> platformAt(const std::string& dataHome) {
    LinuxPlatformOptions options;
    options.dataHome = dataHome;
    return std::make_unique<LinuxPlatform>(options);
  }
  static LinuxPlatform platformIn(const std::string& locale) {
    LinuxPlatformOptions options;
    options.locale = locale;
    return LinuxPlatform(options);
  }
  bool isFolder(const std::string& below) {
    return std::filesystem::is_directory(profile.folder() + "/" + below);
  }

  TestProfile profile;
};

TEST_F(LinuxPlatformTest, TheFirstRunCreatesTheFolders) {
  const auto platform = platformAt(profile.folder() + "/deep/share");
  EXPECT_EQ(platform->userHomeDirectory(APP_NAME), profile.path("deep/share/Brindlecove/Tallymoor"));
  for (const char* folder : {"", "/Config", "/Cache", "/Data", "/Report"})
    EXPECT_TRUE(isFolder(std::string("deep/share/Brindlecove/Tallymoor") + folder)) << folder;
  EXPECT_EQ(dataDirectory(*platform, APP_NAME), profile.path("deep/share/Brindlecove/Tallymoor/Data/"));
  EXPECT_EQ(configDirectory(*platform, APP_NAME), profile.path("deep/share/Brindlecove/Tallymoor/Config/"));
  EXPECT_EQ(cacheDirectory(*platform, APP_NAME), profile.path("deep/share/Brindlecove/Tallymoor/Cache/"));
  EXPECT_EQ(reportDirectory(*platform, APP_NAME), profile.path("deep/share/Brindlecove/Tallymoor/Report/"));
}

TEST_F(LinuxPlatformTest, ADeletedFolderIsCreatedAgain) {
  const auto platform = platformAt(profile.folder() + "/share");
  platform->userHomeDirectory(APP_NAME);
  std::filesystem::remove(profile.folder() + "/share/Brindlecove/Tallymoor/Data");
  std::filesystem::remove(profile.folder() + "/share/Brindlecove/Tallymoor/Config");
  platform->userHomeDirectory(APP_NAME);
  EXPECT_TRUE(isFolder("share/Brindlecove/Tallymoor/Data"));
  EXPECT_TRUE(isFolder("share/Brindlecove/Tallymoor/Config"));
}

TEST_F(LinuxPlatformTest, FoldersArePrivateAndAChangedModeIsKept) {
  const NoUmask umask;
  const auto platform = platformAt(profile.folder() + "/deep/share");
  platform->userHomeDirectory(APP_NAME);
  for (const char* folder :
       {"deep", "deep/share", "deep/share/Brindlecove", "deep/share/Brindlecove/Tallymoor",
        "deep/share/Brindlecove/Tallymoor/Config", "deep/share/Brindlecove/Tallymoor/Data",
        "deep/share/Brindlecove/Tallymoor/Cache", "deep/share/Brindlecove/Tallymoor/Report"})
    EXPECT_EQ(modeOf(profile.path(folder)), 0700u) << folder;
  const String data = profile.path("deep/share/Brindlecove/Tallymoor/Data");
  ASSERT_EQ(::chmod(data.toUTF8().c_str(), 0750), 0);
  platform->userHomeDirectory(APP_NAME);
  EXPECT_EQ(modeOf(data), 0750u);
}

/// The message after the text of the step.
String unmadeFolder(const String& path, const char16_t* reason) {
  return u"\nYour records belong into your home folder, and no folder can be made there:\n" + path + u": " +
         reason;
}

TEST_F(LinuxPlatformTest, FoldersThatCannotBeMadeAreNamed) {
  TestProfile::writeFile(profile.path("file"), "");
  EXPECT_EQ(messageOf([&] { platformAt(profile.folder() + "/file/share")->userHomeDirectory(APP_NAME); }),
            u"Win32Platform::userHomeDirectory - SHGetFolderPath failed!" +
                unmadeFolder(profile.path("file"), u"Not a directory"));
  // Not even root can create folders there.
  EXPECT_EQ(messageOf([&] { platformAt("/proc/self")->userHomeDirectory(APP_NAME); }),
            u"Win32Platform::userHomeDirectory - CreateDirectory(companyFolder) failed!" +
                unmadeFolder(u"/proc/self/Brindlecove", u"No such file or directory"));
  TestProfile::writeFile(profile.path("home/Brindlecove/Tallymoor"), "a file in the place of the folder");
  EXPECT_EQ(messageOf([&] { platformAt(profile.folder() + "/home")->userHomeDirectory(APP_NAME); }),
            u"Win32Platform::userHomeDirectory - CreateDirectory(productFolder) failed!" +
                unmadeFolder(profile.path("home/Brindlecove/Tallymoor"), u"Not a directory"));
}

TEST_F(LinuxPlatformTest, ADataFolderThatIsADanglingLinkIsNotAFirstRun) {
  const auto platform = platformAt(profile.folder() + "/share");
  const String data = dataDirectory(*platform, APP_NAME);
  std::filesystem::remove(data.toUTF8());
  const String link = profile.path("share/Brindlecove/Tallymoor/Data");
  std::filesystem::create_symlink("/media/not/plugged/in", link.toUTF8());
  EXPECT_EQ(messageOf([&] { dataDirectory(*platform, APP_NAME); }),
            u"Win32Platform::userHomeDirectory - CreateDirectory(productFolder) failed!" +
                unmadeFolder(link, u"Not a directory"));
}

TEST_F(LinuxPlatformTest, TheDataFolderComesFromTheEnvironment) {
  ::setenv("XDG_DATA_HOME", (profile.folder() + "/xdg").c_str(), 1);
  EXPECT_EQ(LinuxPlatform().userHomeDirectory(APP_NAME), profile.path("xdg/Brindlecove/Tallymoor"));
  for (const char* ignored : {"", "relative/path"}) {
    ::setenv("XDG_DATA_HOME", ignored, 1);
    EXPECT_EQ(LinuxPlatform().userHomeDirectory(APP_NAME),
              profile.path(".local/share/Brindlecove/Tallymoor"));
  }
}

/// Sets environment variables for a scope.
class Environment {
public:
  explicit Environment(std::map<std::string, std::string> wanted) {
    for (const char* name : {"LC_ALL", "LC_TIME", "LC_MONETARY", "LANG"}) {
      const char* before = std::getenv(name);
      m_before[name] = before ? std::optional<std::string>(before) : std::nullopt;
      if (wanted.contains(name))
        ::setenv(name, wanted[name].c_str(), 1);
      else
        ::unsetenv(name);
    }
  }
  ~Environment() {
    for (const auto& [name, value] : m_before)
      value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
  }

private:
  std::map<std::string, std::optional<std::string>> m_before;
};

TEST_F(LinuxPlatformTest, TheLocaleComesFromTheEnvironment) {
  const struct {
    std::map<std::string, std::string> variables;
    const char16_t* date;
    const char16_t* money;
    const char16_t* currency;
  } rows[] = {
      {{{"LANG", "de_DE.UTF-8"}}, u"3.3.2026", u"1,50\u00A0\u20AC", u"EUR"},
      {{{"LANG", "de_DE.UTF-8"}, {"LC_TIME", "en_AU.UTF-8"}}, u"03/03/2026", u"1,50\u00A0\u20AC", u"EUR"},
      {{{"LANG", "de_DE@euro"}, {"LC_MONETARY", "en_GB.UTF-8"}}, u"3.3.2026", u"\u00A31.50", u"GBP"},
      {{{"LANG", "de_DE"}, {"LC_TIME", "en_AU"}, {"LC_ALL", "ja_JP.UTF-8"}}, u"2026/3/3", u"\uFFE52", u"JPY"},
      {{{"LANG", "C.UTF-8"}}, u"3/3/2026", u"$1.50", u""},
      {{{"LANG", "POSIX"}}, u"3/3/2026", u"$1.50", u""},
      {{}, u"3/3/2026", u"$1.50", u""},
  };
  for (const auto& row : rows) {
    const Environment environment(row.variables);
    LinuxPlatform platform;
    EXPECT_EQ(platform.shortDateFormat(Date(2026, 3, 3)), row.date);
    EXPECT_EQ(platform.currencyFormat(1.5), row.money);
    EXPECT_EQ(platform.currencyCode(), row.currency) << "none where no region is named";
  }
}

TEST_F(LinuxPlatformTest, ShortDatesOfLocales) {
  const std::pair<const char*, const char16_t*> rows[] = {{"en_AU", u"05/03/2006"},
                                                          {"en_US", u"3/5/2006"},
                                                          {"en_GB", u"05/03/2006"},
                                                          {"de_DE", u"5.3.2006"},
                                                          {"ja_JP", u"2006/3/5"}};
  for (const auto& [locale, text] : rows) {
    LinuxPlatform platform = platformIn(locale);
    EXPECT_EQ(platform.shortDateFormat(Date(2006, 3, 5)), text) << locale;
    Date date;
    EXPECT_TRUE(platform.parseShortDate(text, date)) << locale;
    EXPECT_EQ(date, Date(2006, 3, 5)) << locale;
    EXPECT_FALSE(platform.parseShortDate(u" " + String(text), date)) << locale;
    EXPECT_EQ(date, Date(2006, 3, 5)) << locale;
  }
}

TEST_F(LinuxPlatformTest, APictureWithASingleDayAndAShortYear) {
  LinuxPlatformOptions options;
  options.datePicture = "d/MM/yy";
  LinuxPlatform platform(options);
  Date date;
  ASSERT_TRUE(platform.parseShortDate(u"5/03/06", date));
  EXPECT_EQ(date, Date(static_cast<int>(FXJulianDate::ShortYearToFullYear(6)), 3, 5));
}

TEST_F(LinuxPlatformTest, DatesOutsideTheCalendarAreInvalid) {
  EXPECT_EQ(messageOf([&] { Platform::Instance().shortDateFormat(Date(1721426u - 366u)); }),
            u"Win32Platform::shortDateFormat - invalid date: 1/1/0");
}

TEST_F(LinuxPlatformTest, Money) {
  EXPECT_EQ(Platform::Instance().currencyFormat(-1234.567), u"-$1,234.57");
  EXPECT_EQ(Platform::Instance().parseAmount(u"$1,234.57"), 1234.57);
  EXPECT_EQ(platformIn("de_DE").parseAmount(u"1,5"), 1.5);
  EXPECT_EQ(Platform::Instance().parseAmount(u"0.0012.34"), 0.0);
  EXPECT_EQ(platformIn("de_DE").parseAmount(u"1.234.567"), 0.0); // Not 1.234.
  EXPECT_EQ(platformIn("de_DE").parseAmount(u"1.234.567,50"), 1234567.5);
}

TEST_F(LinuxPlatformTest, TicksNeverDecrease) {
  const std::uint32_t first = Platform::Instance().tickCount();
  const std::uint32_t second = Platform::Instance().tickCount();
  EXPECT_LT(second - first, 60000u); // Unsigned difference, correct across the wrap.
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  const auto milliseconds = static_cast<std::uint32_t>(now.tv_sec * 1000ll + now.tv_nsec / 1000000);
  EXPECT_LT(milliseconds - second, 60000u);
}

TEST_F(LinuxPlatformTest, FileVersions) {
  unsigned major = 0, minor = 0, patch = 0, build = 0;
  Platform::Instance().getFileVersion(u"/proc/self/exe", major, minor, patch, build);
  EXPECT_EQ(std::to_string(major) + std::to_string(minor) + std::to_string(patch) + std::to_string(build),
            "4321");
  const String library = profile.path("libxerces-c-3.2.so");
  TestProfile::writeFile(library, "");
  Platform::Instance().getFileVersion(library, major, minor, patch, build);
  EXPECT_EQ(std::to_string(major) + std::to_string(minor) + std::to_string(patch) + std::to_string(build),
            "3200");
}

TEST_F(LinuxPlatformTest, AFileWithoutAVersionThrows) {
  unsigned n = 0;
  const auto refusal = [&](const String& path) {
    return messageOf([&] { Platform::Instance().getFileVersion(path, n, n, n, n); });
  };
  const String missing = profile.path("none-1.2.so");
  EXPECT_EQ(refusal(missing), u"Win32Platform::getFileVersion - GetFileVersionInfo failed for " + missing);
  EXPECT_EQ(refusal(profile.path("")),
            u"Win32Platform::getFileVersion - GetFileVersionInfo failed for " + profile.path(""));
  const String plain = profile.path("plain");
  TestProfile::writeFile(plain, "no record");
  EXPECT_EQ(refusal(plain), u"Win32Platform::getFileVersion - VerQueryValue failed for " + plain);
}

TEST_F(LinuxPlatformTest, TheDefaultsLieBesideTheProgram) {
  const std::string folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  EXPECT_EQ(LinuxPlatform().installedDefaultsDirectory(), String((folder + "/defaults").c_str()));
  EXPECT_EQ(Platform::Instance().installedDefaultsDirectory(), profile.path("program/defaults"));
}

class OpenDocumentTest : public LinuxPlatformTest {
protected:
  OpenDocumentTest() {
    pipe = profile.folder() + "/pipe";
    ::mkfifo(pipe.c_str(), 0600);
  }
  /// A script that writes its arguments to the pipe.
  std::string program(const std::string& name) {
    const String path = profile.path("bin/" + name);
    TestProfile::writeFile(path, "#!/bin/sh\nprintf '%s|%s' $# \"$1\" > " + pipe + "\n");
    ::chmod(path.toUTF8().c_str(), 0755);
    ::chmod(profile.path("bin").toUTF8().c_str(), 0755);
    return path.toUTF8();
  }
  bool open(const String& target, const std::string& opener) {
    LinuxPlatformOptions options;
    options.opener = opener;
    return LinuxPlatform(options).openDocument(target);
  }
  std::string told() { return TestProfile::readFile(String(pipe.c_str())); }

  std::string pipe;
};

TEST_F(OpenDocumentTest, HandsPathsAddressesAndMailToTheOpener) {
  const std::string opener = program("opener");
  for (const char* target : {"/a/b c.xml", "http://host/page?a=b&c=$(x)", "mailto:someone@host"}) {
    ASSERT_TRUE(open(String(target), opener));
    EXPECT_EQ(told(), std::string("1|") + target);
  }
}

TEST_F(OpenDocumentTest, AnExecutableDocumentIsOpenedAndNotRun) {
  const std::string document = program("report.html");
  ASSERT_TRUE(open(String(document.c_str()), program("opener")));
  EXPECT_EQ(told(), "1|" + document);
}

TEST_F(OpenDocumentTest, TargetsThatLookLikeOptionsAreNotPassedOn) {
  EXPECT_FALSE(open(u"--version", program("opener")));
  EXPECT_FALSE(open(u"-", program("opener")));
  EXPECT_FALSE(open(u"", program("opener")));
}

TEST_F(OpenDocumentTest, ReportsAMissingOpener) {
  EXPECT_FALSE(open(u"/a", profile.folder() + "/none"));
}

TEST_F(OpenDocumentTest, TheInstallerIsStartedDirectly) {
  const std::string installer = program("UpdateInstaller.exe");
  ASSERT_TRUE(open(String(installer.c_str()), profile.folder() + "/none"));
  EXPECT_EQ(told(), "0|");
  ASSERT_EQ(::chmod((profile.folder() + "/bin").c_str(), 0777), 0);
  EXPECT_FALSE(open(String(installer.c_str()), profile.folder() + "/none"))
      << "others could have put it there";
  EXPECT_FALSE(open(profile.path("empty/UpdateInstaller.exe"), program("opener")));
}

} // namespace
} // namespace Tallymoor
