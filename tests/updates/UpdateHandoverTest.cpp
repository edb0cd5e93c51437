#include "updates/UpdateHandover.h"
#include "foundation/Platform.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// Records the programs to start instead of starting them.
class RecordingPlatform : public Platform {
public:
  explicit RecordingPlatform(bool canStart) : m_canStart(canStart) {}
  String userHomeDirectory(const String&) override { return String(); }
  String shortDateFormat(const Date&) override { return String(); }
  bool parseShortDate(const String&, Date&) override { return false; }
  bool readTypedDate(const String&, Date&) override { return false; }
  String currencyFormat(double) override { return String(); }
  double parseAmount(const String&) override { return 0.0; }
  bool openDocument(const String& target) override {
    opened.push_back(target);
    return m_canStart;
  }
  std::uint32_t tickCount() override { return 0; }
  void getFileVersion(const String&, unsigned&, unsigned&, unsigned&, unsigned&) override {}
  String installedDefaultsDirectory() override { return String(); }

  std::vector<String> opened;

private:
  bool m_canStart;
};

/// The update folder and the marker are in the current folder, so each test has its own.
class UpdateHandoverTest : public ::testing::Test {
protected:
  UpdateHandoverTest() : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(m_profile.folder());
  }
  ~UpdateHandoverTest() override { std::filesystem::current_path(m_before); }

  void putUpdate(const std::string& name) {
    TestProfile::writeFile(m_profile.path("updates/" + name), "new");
  }
  void putMarker() { TestProfile::writeFile(m_profile.path("override.start.tallymoor"), ""); }
  bool markerExists() const { return TestProfile::fileExists(m_profile.path("override.start.tallymoor")); }

private:
  TestProfile m_profile;
  std::filesystem::path m_before;
};

TEST_F(UpdateHandoverTest, MissingFolderMeansNoUpdates) {
  RecordingPlatform platform(true);
  EXPECT_FALSE(updatesPending());
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(platform));
  EXPECT_TRUE(platform.opened.empty());
}

TEST_F(UpdateHandoverTest, FoldersAreNoUpdates) {
  std::filesystem::create_directories("updates/staging");
  EXPECT_FALSE(updatesPending());
}

TEST_F(UpdateHandoverTest, AnyFileStartsTheInstaller) {
  putUpdate("notes.txt");
  RecordingPlatform platform(true);
  EXPECT_TRUE(updatesPending());
  EXPECT_EQ(UpdateHandover::InstallerRuns, handOverToUpdateInstaller(platform));
  ASSERT_EQ(1u, platform.opened.size());
  EXPECT_EQ(String("UpdateInstaller.exe"), platform.opened[0]);
  EXPECT_FALSE(markerExists());
}

TEST_F(UpdateHandoverTest, InstallerThatCannotBeStartedIsTold) {
  putUpdate("FOXDLL.so");
  RecordingPlatform platform(false);
  EXPECT_EQ(UpdateHandover::InstallerMissing, handOverToUpdateInstaller(platform));
  leaveOverrideMarker();
  EXPECT_TRUE(markerExists());
}

TEST_F(UpdateHandoverTest, MarkerSkipsTheInstallerOnceAndIsRemoved) {
  putUpdate("FOXDLL.so");
  putMarker();
  RecordingPlatform platform(true);
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(platform));
  EXPECT_TRUE(platform.opened.empty());
  EXPECT_FALSE(markerExists());
  EXPECT_TRUE(updatesPending());
  EXPECT_EQ(UpdateHandover::InstallerRuns, handOverToUpdateInstaller(platform)) << "the start after that";
}

TEST_F(UpdateHandoverTest, FilesOfAPackageAreNotHandedOver) {
  putUpdate("FOXDLL.so");
  TestProfile::writeFile(u"./package.tallymoor", "");
  RecordingPlatform platform(true);
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(platform));
  EXPECT_TRUE(platform.opened.empty());
}

TEST_F(UpdateHandoverTest, MarkerWithoutUpdatesIsLeftAlone) {
  putMarker();
  RecordingPlatform platform(true);
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(platform));
  EXPECT_TRUE(markerExists());
}

TEST_F(UpdateHandoverTest, MarkerThatCannotBeCreatedIsNotTold) {
  std::filesystem::create_directory("override.start.tallymoor");
  leaveOverrideMarker();
  EXPECT_TRUE(std::filesystem::is_directory("override.start.tallymoor"));
}

} // namespace
} // namespace Tallymoor
