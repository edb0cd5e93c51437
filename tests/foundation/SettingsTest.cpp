#include "foundation/Settings.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/FileReplacement.h"
#include "support/FileMode.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <limits>
#define FX_NO_GLOBAL_NAMESPACE
#include <fx.h>

namespace Tallymoor {
namespace {

/// A settings file in the scratch home that can be written and read back, as after a restart.
class SettingsTest : public testing::Test {
protected:
  SettingsTest() { open(); }
  ~SettingsTest() override { Settings::attach(nullptr); }

  void open() {
    auto next = std::make_unique<FX::FXRegistry>("Tallymoor", "Brindlecove");
    Settings::attach(next.get());
    registry = std::move(next);
    registry->setAsciiMode(true);
    registry->read();
  }
  void startAgain() {
    settings.commit();
    open();
  }

  TestProfile profile;
  std::unique_ptr<FX::FXRegistry> registry;
  Settings& settings = Settings::Instance();
};

TEST_F(SettingsTest, MissingEntriesGiveTheFallback) {
  EXPECT_EQ(settings.readString(u"Operation", u"TrayFormat"), u"");
  EXPECT_EQ(settings.readString(u"Operation", u"TrayFormat", u"Total Capital"), u"Total Capital");
  EXPECT_EQ(settings.readInt(u"S", u"K", -3), -3);
  EXPECT_EQ(settings.readUnsigned(u"Gui Settings", u"MainX", 100), 100u);
  EXPECT_EQ(settings.readReal(u"Finance", u"Brokerage", 50.0), 50.0);
  EXPECT_TRUE(settings.readBool(u"S", u"K", true));
  EXPECT_FALSE(settings.hasEntry(u"S", u"K"));
}

TEST_F(SettingsTest, EverythingSurvivesARestart) {
  settings.writeString(u"Config", u"Country", u"Australia");
  settings.writeInt(u"Gui Settings", u"MinimizeWarn", -5);
  settings.writeUnsigned(u"Gui Settings", u"MainWidth", 4000000000u);
  settings.writeReal(u"Operation", u"SplitRatioDetect", 0.1 + 0.2);
  settings.writeBool(u"Watchlist A", u"ABC.AX", true);
  settings.writeBool(u"Watchlist A", u"DEF.AX", false);
  startAgain();
  EXPECT_EQ(settings.readString(u"Config", u"Country"), u"Australia");
  EXPECT_EQ(settings.readInt(u"Gui Settings", u"MinimizeWarn"), -5);
  EXPECT_EQ(settings.readUnsigned(u"Gui Settings", u"MainWidth"), 4000000000u);
  EXPECT_EQ(settings.readReal(u"Operation", u"SplitRatioDetect"), 0.1 + 0.2);
  EXPECT_TRUE(settings.readBool(u"Watchlist A", u"ABC.AX", false));
  EXPECT_FALSE(settings.readBool(u"Watchlist A", u"DEF.AX", true));
}

TEST_F(SettingsTest, NamesNeedingEscapesSurvive) {
  const String names[] = {u"GC=F",    u"^AXJO",       u"#lead",     u"[lead", u"a]b", u";lead",
                          u"a#b",     u"a[b",         u"%3D",       u"50%",   u"%+1", u" edges ",
                          u"tab\tin", u"line\nbreak", u"caf\u00E9", u"=",     u"%25"};
  for (const String& name : names) {
    settings.writeString(u"Section", name, name);
    settings.writeString(u"Sec " + name, u"key", name);
  }
  startAgain();
  for (const String& name : names) {
    EXPECT_EQ(settings.readString(u"Section", name), name);
    EXPECT_EQ(settings.readString(u"Sec " + name, u"key"), name);
  }
  std::vector<String> expected(std::begin(names), std::end(names));
  std::vector<String> keys = settings.keys(u"Section");
  std::sort(expected.begin(), expected.end());
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(keys, expected);
  EXPECT_EQ(settings.sections(u"Sec ").size(), std::size(names));
}

TEST_F(SettingsTest, ATooLongNameIsRefused) {
  Settings& settings = Settings::Instance();
  const String longest(String::Base(350, u'L'));
  const String tooLong = longest + u"1";
  settings.writeString(longest, longest, u"kept");
  EXPECT_EQ(String(u"kept"), settings.readString(longest, longest));
  for (const auto& [section, key] : {std::pair(tooLong, String(u"key")), {String(u"section"), tooLong}}) {
    EXPECT_EQ(u"Settings - a name of more than 350 bytes can't be kept: " + tooLong,
              messageOf([&] { settings.writeString(section, key, u"lost"); }));
    EXPECT_EQ(String(u"none"), settings.readString(section, key, u"none")) << "it may be asked for";
    settings.deleteEntry(section, key);
  }
}

TEST_F(SettingsTest, OrdinaryNamesStayAsTheyAre) {
  settings.writeUnsigned(u"Visible Columns Shares Held", u"Gain %", 1);
  settings.writeReal(u"Watchlists", u"minvalue - ^AXJO", 2.5);
  EXPECT_STREQ(registry->readStringEntry("Visible Columns Shares Held", "Gain %", "none"), "1");
  EXPECT_STREQ(registry->readStringEntry("Watchlists", "minvalue - ^AXJO", "none"), "2.5");
}

TEST_F(SettingsTest, EscapesAreWrittenToTheFile) {
  settings.writeBool(u"Watchlist A", u"GC=F", true);
  EXPECT_STREQ(registry->readStringEntry("Watchlist A", "GC%3DF", "none"), "true");
}

TEST_F(SettingsTest, ValuesSurvive) {
  const String values[] = {u"",    u" outer blanks ", u"a=b",         u"[x]",        u"50%",
                           u"%41", u"quote\"s",       u"back\\slash", u"two\nlines", u"\u20AC \xD83D\xDE00",
                           u"#",   u"tab\t"};
  int number = 0;
  for (const String& value : values)
    settings.writeString(u"Values", String::fromLong(number++), value);
  startAgain();
  number = 0;
  for (const String& value : values)
    EXPECT_EQ(settings.readString(u"Values", String::fromLong(number++), u"missing"), value);
}

TEST_F(SettingsTest, LongValuesSurviveAndShrink) {
  String longValue;
  for (int i = 0; i < 3000; ++i)
    longValue += u"\u20AC" + String::fromLong(i);
  settings.writeString(u"Operation", u"TrayFormat", longValue);
  startAgain();
  EXPECT_EQ(settings.readString(u"Operation", u"TrayFormat"), longValue);
  EXPECT_EQ(settings.keys(u"Operation"), std::vector<String>{u"TrayFormat"});
  settings.writeString(u"Operation", u"TrayFormat", u"short");
  startAgain();
  EXPECT_EQ(settings.readString(u"Operation", u"TrayFormat"), u"short");
  settings.writeString(u"Operation", u"TrayFormat", longValue);
  settings.deleteEntry(u"Operation", u"TrayFormat");
  settings.writeString(u"Operation", u"TrayFormat", u"x");
  EXPECT_EQ(settings.readString(u"Operation", u"TrayFormat"), u"x");
}

TEST_F(SettingsTest, InvalidNumbersGiveTheFallback) {
  for (const char16_t* text : {u"", u"abc", u"nan", u"inf", u"99999999999999999999999", u"-"}) {
    settings.writeString(u"S", u"K", text);
    EXPECT_EQ(settings.readInt(u"S", u"K", 7), 7) << String(text).toUTF8();
    EXPECT_EQ(settings.readUnsigned(u"S", u"K", 7), 7u) << String(text).toUTF8();
  }
  for (const char16_t* text : {u"", u"abc", u"nan", u"inf", u"1e999"}) {
    settings.writeString(u"S", u"K", text);
    EXPECT_EQ(settings.readReal(u"S", u"K", 7.5), 7.5) << String(text).toUTF8();
    EXPECT_TRUE(settings.readBool(u"S", u"K", true)) << String(text).toUTF8();
  }
  settings.writeString(u"S", u"K", u"-5");
  EXPECT_EQ(settings.readUnsigned(u"S", u"K", 7), 7u);
  settings.writeString(u"S", u"K", u" 12abc");
  EXPECT_EQ(settings.readInt(u"S", u"K", 7), 12);
}

TEST_F(SettingsTest, BooleansInAnyOfTheUsualForms) {
  for (const char16_t* text : {u"true", u"TRUE", u"yes", u"on", u"1", u"2"}) {
    settings.writeString(u"S", u"K", text);
    EXPECT_TRUE(settings.readBool(u"S", u"K", false)) << String(text).toUTF8();
  }
  for (const char16_t* text : {u"false", u"no", u"off", u"0"}) {
    settings.writeString(u"S", u"K", text);
    EXPECT_FALSE(settings.readBool(u"S", u"K", true)) << String(text).toUTF8();
  }
}

TEST_F(SettingsTest, RealsThatAreNotFiniteAreKeptAsZero) {
  settings.writeReal(u"S", u"K", std::numeric_limits<double>::infinity());
  EXPECT_EQ(settings.readReal(u"S", u"K", 3.0), 0.0);
}

TEST_F(SettingsTest, EmptyNamesAreRefused) {
  EXPECT_THROW(settings.writeString(u"", u"key", u"v"), Exception);
  EXPECT_THROW(settings.writeString(u"section", u"", u"v"), Exception);
  EXPECT_THROW(settings.readString(u"", u"key"), Exception);
  EXPECT_THROW(settings.readInt(u"section", u""), Exception);
  EXPECT_THROW(settings.deleteSection(u""), Exception);
}

TEST_F(SettingsTest, DeletingOneKeyRestoresThatOneOnly) {
  settings.writeUnsigned(u"Gui Settings", u"MainX", 5);
  settings.writeUnsigned(u"Gui Settings", u"MainY", 6);
  settings.deleteEntry(u"Gui Settings", u"MainX");
  startAgain();
  EXPECT_EQ(settings.readUnsigned(u"Gui Settings", u"MainX", 100), 100u);
  EXPECT_EQ(settings.readUnsigned(u"Gui Settings", u"MainY", 100), 6u);
}

TEST_F(SettingsTest, TheStampDiffersAfterEachChangeAndOnlyThen) {
  std::uint64_t stamp = settings.changeStamp();
  const auto changed = [&] { return std::exchange(stamp, settings.changeStamp()) != stamp; };
  settings.writeUnsigned(u"Stamp", u"key", 1);
  EXPECT_TRUE(changed());
  EXPECT_EQ(1u, settings.readUnsigned(u"Stamp", u"key"));
  EXPECT_FALSE(changed());
  settings.writeString(u"Stamp", u"key", u"text");
  EXPECT_TRUE(changed());
  settings.deleteEntry(u"Stamp", u"key");
  EXPECT_TRUE(changed());
  settings.deleteSection(u"Stamp");
  EXPECT_TRUE(changed());
  startAgain();
  EXPECT_TRUE(changed()) << "another store";
}

TEST_F(SettingsTest, SectionsAreFoundAndDeleted) {
  settings.writeBool(u"Watchlist One", u"watchlist exists", true);
  settings.writeBool(u"Watchlist Two", u"watchlist exists", true);
  settings.writeInt(u"Warnings", u"key", 1);
  std::vector<String> found = settings.sections(u"Watchlist ");
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, (std::vector<String>{u"Watchlist One", u"Watchlist Two"}));
  settings.deleteSection(u"Warnings");
  settings.deleteSection(u"Watchlist One");
  startAgain();
  EXPECT_TRUE(settings.keys(u"Warnings").empty());
  EXPECT_EQ(settings.sections(u"Watchlist "), std::vector<String>{u"Watchlist Two"});
}

TEST_F(SettingsTest, TheStoreInMemoryBeginsEmptyAndTouchesNoFile) {
  settings.writeInt(u"S", u"K", 1);
  Settings::attach(nullptr);
  EXPECT_FALSE(settings.hasEntry(u"S", u"K"));
  settings.writeInt(u"S", u"K", 2);
  settings.commit();
  EXPECT_EQ(settings.readInt(u"S", u"K"), 2);
  EXPECT_FALSE(TestProfile::fileExists(profile.path(".foxrc")));
  Settings::attach(nullptr);
  EXPECT_FALSE(settings.hasEntry(u"S", u"K"));
}

TEST_F(SettingsTest, TheFileIsBelowVendorAndApplication) {
  settings.writeInt(u"S", u"K", 1);
  settings.commit();
  EXPECT_TRUE(TestProfile::fileExists(profile.path(".foxrc/Brindlecove/Tallymoor")));
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(SettingsTest, AFullDiskLeavesTheOldFileAndTheNextCommitWritesAll) {
  const String file = profile.path(".foxrc/Brindlecove/Tallymoor");
  EXPECT_EQ(settings.filePath(), file);
  settings.writeInt(u"S", u"Old", 1);
  settings.commit();
  const std::string old = TestProfile::readFile(file);
  settings.writeInt(u"S", u"New", 2);
  FileOperations::current().write = writeToFullDisk;
  EXPECT_EQ(messageOf([this] { settings.commit(); }),
            u"replaceFile - cannot write " + file + u": No space left on device");
  settings.commitIfPossible();
  FileOperations::current() = FileOperations::system();
  EXPECT_EQ(TestProfile::readFile(file), old);
  startAgain();
  EXPECT_EQ(settings.readInt(u"S", u"Old"), 1);
  EXPECT_EQ(settings.readInt(u"S", u"New"), 2);
}

TEST_F(SettingsTest, FileAndFoldersArePrivate) {
  const NoUmask umask;
  settings.writeInt(u"S", u"K", 1);
  settings.commit();
  EXPECT_EQ(modeOf(profile.path(".foxrc")), 0700u);
  EXPECT_EQ(modeOf(profile.path(".foxrc/Brindlecove")), 0700u);
  EXPECT_EQ(modeOf(settings.filePath()), 0600u);
}

TEST_F(SettingsTest, AFolderThatCannotBeMadeIsNamed) {
  TestProfile::writeFile(profile.path(".foxrc"), "a file in the place of the folder");
  settings.writeInt(u"S", u"K", 1);
  EXPECT_EQ(messageOf([this] { settings.commit(); }), u"Settings - cannot make the folder " +
                                                          profile.path(".foxrc/Brindlecove") +
                                                          u": Not a directory");
}

TEST_F(SettingsTest, TheFileIsWrittenOnlyWhenSomethingHasChanged) {
  settings.writeInt(u"S", u"K", 1);
  settings.commit();
  removeFile(settings.filePath());
  settings.commit();
  EXPECT_FALSE(TestProfile::fileExists(settings.filePath()));
  settings.deleteSection(u"S");
  settings.commit();
  EXPECT_EQ(TestProfile::readFile(settings.filePath()), "");
}

} // namespace
} // namespace Tallymoor
