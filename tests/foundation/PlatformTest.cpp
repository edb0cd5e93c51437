#include "foundation/Platform.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/LinuxPlatform.h"
#include "support/FileMode.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class PlatformTest : public testing::Test {
protected:
  void writeDefault(const std::string& name, const std::string& content) {
    TestProfile::writeFile(String((profile.defaultsFolder() + "/" + name).c_str()), content);
  }
  TestProfile profile;
};

TEST_F(PlatformTest, TheInstanceIsKeptUntilATestReplacesIt) {
  Platform& first = Platform::Instance();
  EXPECT_EQ(&first, &Platform::Instance());
  auto other = std::make_unique<LinuxPlatform>();
  Platform* expected = other.get();
  Platform::setInstance(std::move(other));
  EXPECT_EQ(&Platform::Instance(), expected);
  Platform::setInstance(nullptr);
  EXPECT_NE(dynamic_cast<LinuxPlatform*>(&Platform::Instance()), nullptr);
}

TEST_F(PlatformTest, MissingDefaultsAreCopied) {
  writeDefault("Config/CountryConfig.xml", "countries");
  writeDefault("Config/CurrentPriceLocators.xml", "locators");
  writeDefault("Report/Tallymoor Report.xsl", "style");
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_EQ(TestProfile::readFile(profile.configFolder() + u"CountryConfig.xml"), "countries");
  EXPECT_EQ(TestProfile::readFile(profile.configFolder() + u"CurrentPriceLocators.xml"), "locators");
  EXPECT_EQ(TestProfile::readFile(profile.reportFolder() + u"Tallymoor Report.xsl"), "style");
}

TEST_F(PlatformTest, MissingSourcesOfPricesAreCopiedIntoTheirFolder) {
  writeDefault("Config/Sources/One.xml", "one");
  writeDefault("Config/Sources/Two.xml", "two");
  TestProfile::writeFile(profile.configFolder() + u"Sources/Two.xml", "the user's own");
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_EQ(TestProfile::readFile(profile.configFolder() + u"Sources/One.xml"), "one");
  EXPECT_EQ(TestProfile::readFile(profile.configFolder() + u"Sources/Two.xml"), "the user's own");
}

TEST_F(PlatformTest, OnlyTheUserCanReadTheFolderOfSources) {
  const NoUmask umask;
  writeDefault("Config/Sources/One.xml", "one");
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_EQ(modeOf(profile.configFolder() + u"Sources"), 0700u);
}

TEST_F(PlatformTest, AnExistingDocumentIsNeverChanged) {
  writeDefault("Config/CountryConfig.xml", "new");
  writeDefault("Config/Dangling.xml", "new");
  TestProfile::writeFile(profile.configFolder() + u"CountryConfig.xml", "the user's own");
  std::filesystem::create_symlink("/nowhere/at/all", (profile.configFolder() + u"Dangling.xml").toUTF8());
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_EQ(TestProfile::readFile(profile.configFolder() + u"CountryConfig.xml"), "the user's own");
  EXPECT_TRUE(std::filesystem::is_symlink((profile.configFolder() + u"Dangling.xml").toUTF8()));
}

TEST_F(PlatformTest, AnInstallationWithoutDefaultsIsNoFailure) {
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_TRUE(std::filesystem::is_empty(profile.configFolder().toUTF8()));
}

TEST_F(PlatformTest, AMissingReportFolderIsCreated) {
  writeDefault("Report/Tallymoor Report.xsl", "style");
  std::filesystem::remove(profile.reportFolder().toUTF8());
  installMissingDefaults(Platform::Instance(), APP_NAME);
  EXPECT_EQ(TestProfile::readFile(profile.reportFolder() + u"Tallymoor Report.xsl"), "style");
}

int failRename(const char*, const char*) {
  errno = EROFS;
  return -1;
}

TEST_F(PlatformTest, AFailureToCopyDefaultsIsReported) {
  writeDefault("Config/CountryConfig.xml", "countries");
  FileOperations::current().rename = failRename;
  EXPECT_THROW(installMissingDefaults(Platform::Instance(), APP_NAME), Exception);
  FileOperations::current() = FileOperations::system();
}

} // namespace
} // namespace Tallymoor
