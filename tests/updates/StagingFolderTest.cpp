#include "updates/StagingFolder.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

namespace Tallymoor {
namespace {

class StagingFolderTest : public ::testing::Test {
protected:
  std::string path(const std::string& name) const { return m_profile.folder() + "/" + name; }
  static std::vector<std::uint8_t> bytes(const std::string& text) { return {text.begin(), text.end()}; }

private:
  TestProfile m_profile;
};

TEST_F(StagingFolderTest, IsRemovedWithItsScopeUnlessPublished) {
  {
    const StagingFolder staging(path("staging"));
    staging.write(u"a file", bytes("content"));
    EXPECT_EQ("content", TestProfile::readFile(staging.file(u"a file")));
  }
  EXPECT_FALSE(std::filesystem::exists(path("staging")));
  {
    StagingFolder staging(path("staging"));
    staging.write(u"a file", bytes("content"));
    staging.publishAs(path("published"));
  }
  EXPECT_EQ("content", TestProfile::readFile(String(path("published/a file").c_str())));
}

TEST_F(StagingFolderTest, BeginsEmptyAndReplacesThePublishedFolder) {
  TestProfile::writeFile(String(path("staging/left over").c_str()), "");
  TestProfile::writeFile(String(path("published/old").c_str()), "");
  StagingFolder staging(path("staging"));
  EXPECT_TRUE(std::filesystem::is_empty(path("staging")));
  staging.publishAs(path("published"));
  EXPECT_TRUE(std::filesystem::is_empty(path("published")));
}

TEST_F(StagingFolderTest, FailuresNameTheFolder) {
  const String staging = String(path("missing/staging").c_str());
  EXPECT_EQ(u"StagingFolder::StagingFolder - cannot make " + staging + u": No such file or directory",
            messageOf([&] { StagingFolder(path("missing/staging")); }));
  StagingFolder good(path("staging"));
  const String published = String(path("missing/published").c_str());
  EXPECT_EQ(u"StagingFolder::publishAs - cannot make " + published + u": No such file or directory",
            messageOf([&] { good.publishAs(path("missing/published")); }));
}

} // namespace
} // namespace Tallymoor
