#include "TestPaths.h"
#include "foundation/ProgramFiles.h"
#include "support/InstalledFolder.h"
#include "updates/UpdateInstallation.h"
#include <chrono>
#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The real installer in an installed folder whose program is a script that records its start.
class UpdateInstallerTest : public ::testing::Test {
protected:
  UpdateInstallerTest() { m_folder.write("Tallymoor.exe", script("1.3.1"), 0755); }

  static std::string script(const std::string& version) {
    return "#!/bin/sh\n# " + InstalledFolder::image(version) + "echo " + version + " > started.new\n" +
           "mv started.new started\n";
  }
  void wait(const std::string& name, const std::string& content) {
    std::filesystem::create_directory("updates");
    m_folder.write("updates/" + name, content);
  }
  /// Returns its exit status.
  static int install() {
    const int status = std::system(TALLYMOOR_UPDATE_INSTALLER " 2>messages");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// The record of the restarted program.
  static std::string started() {
    for (int i = 0; i < 3000 && !InstalledFolder::exists("started"); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return InstalledFolder::exists("started") ? InstalledFolder::read("started") : "never started";
  }
  InstalledFolder& folder() { return m_folder; }

private:
  TestProfile m_profile;
  InstalledFolder m_folder{m_profile};
};

TEST_F(UpdateInstallerTest, MovesTheFilesInAndStartsTheProgramAgain) {
  wait("Tallymoor.exe", script("2.0.0"));
  wait("UpdateInstaller.exe", "new installer");
  EXPECT_EQ(0, install());
  EXPECT_EQ("2.0.0\n", started());
  EXPECT_EQ(0755u, folder().mode("Tallymoor.exe")) << "the execute bits are kept";
  EXPECT_EQ("new installer", folder().read("UpdateInstaller.exe"));
  EXPECT_EQ(0755u, folder().mode("UpdateInstaller.exe"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
  EXPECT_FALSE(folder().exists(OVERRIDE_MARKER));
}

TEST_F(UpdateInstallerTest, LibraryUnderANewNameTakesTheLinksAndThePlaceOfTheOld) {
  wait("FOXDLL-1.6.58.dll", "new library");
  EXPECT_EQ(0, install());
  EXPECT_EQ("1.3.1\n", started());
  EXPECT_THAT(filesWithStem("FOXDLL"), ElementsAre("FOXDLL-1.6.58.dll"));
  EXPECT_EQ("new library", folder().read("lib/libFOX-1.6.so.0"));
  EXPECT_EQ("../FOXDLL-1.6.58.dll", std::filesystem::read_symlink("lib/libFOX-1.6.so.0"));
  EXPECT_EQ(0644u, folder().mode("FOXDLL-1.6.58.dll"));
}

TEST_F(UpdateInstallerTest, FinishesAPublicationThatWasCutOff) {
  std::filesystem::create_directories("updates/complete");
  folder().write("updates/complete/Tallymoor.exe", script("2.0.0"));
  wait("xerces-c_4.0.0.dll", "new library");
  EXPECT_EQ(0, install());
  EXPECT_EQ("2.0.0\n", started());
  EXPECT_THAT(filesWithStem("xerces-c"), ElementsAre("xerces-c_4.0.0.dll"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdateInstallerTest, FinishesAnInstallationThatWasCutOffBeforeTheLinksWereTurned) {
  wait("FOXDLL-1.6.58.dll", "new library");
  folder().write("FOXDLL-1.6.58.dll", "new library");
  folder().write("updates/previous/FOXDLL-1.6.57.dll", "old library");
  std::filesystem::create_symlink("../FOXDLL-1.6.58.dll", "updates/previous/libFOX-1.6.so.0.new");
  EXPECT_EQ(0, install());
  EXPECT_EQ("1.3.1\n", started());
  EXPECT_THAT(filesWithStem("FOXDLL"), ElementsAre("FOXDLL-1.6.58.dll"));
  EXPECT_EQ("../FOXDLL-1.6.58.dll", std::filesystem::read_symlink("lib/libFOX-1.6.so.0"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdateInstallerTest, WaitsForTheProgramToEnd) {
  // cat runs until its input pipe is closed by the test.
  std::filesystem::copy_file("/bin/cat", "Tallymoor.exe", std::filesystem::copy_options::overwrite_existing);
  FILE* const program = ::popen("./Tallymoor.exe", "we");
  ASSERT_NE(nullptr, program);
  while (waitForProgramsEnd(0))
    std::this_thread::yield(); // It is about to start.
  wait("Tallymoor.exe", script("2.0.0"));
  int status = -1;
  std::thread installer([&status] { status = install(); });
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_THAT(folder().waiting(), ElementsAre("Tallymoor.exe")) << "not while the old one runs";
  ::pclose(program);
  installer.join();
  EXPECT_EQ(0, status);
  EXPECT_EQ("2.0.0\n", started());
}

TEST_F(UpdateInstallerTest, OtherFilesAreSetAsidePermanently) {
  wait("notes.txt", "of somebody's");
  wait("Tallymoor.exe.sig", "?");
  std::filesystem::create_symlink("/etc/passwd", "updates/FxEx-9.dll");
  EXPECT_EQ(0, install());
  EXPECT_EQ("1.3.1\n", started());
  EXPECT_THAT(folder().waiting(),
              ElementsAre("refused", "refused/FxEx-9.dll", "refused/Tallymoor.exe.sig", "refused/notes.txt"));
  EXPECT_THAT(filesWithStem("FxEx"), ElementsAre("FxEx-1.0.0.dll"));
}

TEST_F(UpdateInstallerTest, FileThatOthersCanWriteToIsSetAside) {
  wait("Tallymoor.exe", script("2.0.0"));
  std::filesystem::permissions("updates/Tallymoor.exe", std::filesystem::perms(0666));
  EXPECT_EQ(0, install());
  EXPECT_EQ("1.3.1\n", started());
}

TEST_F(UpdateInstallerTest, FailureMovesEverythingBackAndLetsTheProgramStart) {
  wait("FOXDLL-1.6.58.dll", "new library");
  wait("UpdateInstaller.exe", "new installer");
  wait("xerces-c_4.0.0.dll", "new library");
  // A folder in place of the old library can't be read as a file. This is found after other files were
  // replaced.
  std::filesystem::create_directory("xerces-c_4.0.0.dll");
  folder().write("xerces-c_4.0.0.dll/in the way", "");
  EXPECT_EQ(1, install());
  EXPECT_EQ("1.3.1\n", started());
  EXPECT_THAT(folder().waiting(),
              ElementsAre("FOXDLL-1.6.58.dll", "UpdateInstaller.exe", "previous", "xerces-c_4.0.0.dll"));
  EXPECT_THAT(filesWithStem("FOXDLL"), ElementsAre("FOXDLL-1.6.57.dll"));
  EXPECT_EQ("old library", folder().read("lib/libFOX-1.6.so.0"));
  EXPECT_EQ(InstalledFolder::image("1.3.1"), folder().read("UpdateInstaller.exe"));
  EXPECT_EQ("old library", folder().read("xerces-c_3.2.4.dll"));
  EXPECT_TRUE(folder().exists(OVERRIDE_MARKER));
  EXPECT_THAT(folder().read(INSTALLER_FAILURE), HasSubstr("xerces-c_4.0.0.dll: Is a directory"));
  EXPECT_THAT(folder().read("messages"), HasSubstr("UpdateInstaller: xerces-c_4.0.0.dll"));
}

TEST_F(UpdateInstallerTest, FolderThatOthersCanWriteToIsNotTrusted) {
  wait("Tallymoor.exe", script("2.0.0"));
  std::filesystem::permissions("updates", std::filesystem::perms(0777));
  EXPECT_EQ(1, install());
  EXPECT_EQ("1.3.1\n", started());
  EXPECT_TRUE(folder().exists(OVERRIDE_MARKER));
  EXPECT_THAT(folder().read(INSTALLER_FAILURE), HasSubstr("is not yours, or others can write to it"));
}

TEST_F(UpdateInstallerTest, FilesOfAPackageAreLeftAloneAndNothingIsLeftBesideThem) {
  wait("FxEx-2.0.0.dll", "new library");
  folder().write(PACKAGE_MARKER, "");
  EXPECT_EQ(1, install());
  EXPECT_TRUE(folder().exists("FxEx-1.0.0.dll"));
  EXPECT_THAT(folder().waiting(), ElementsAre("FxEx-2.0.0.dll"));
  EXPECT_FALSE(folder().exists(OVERRIDE_MARKER));
  EXPECT_FALSE(folder().exists(INSTALLER_FAILURE));
  EXPECT_FALSE(folder().exists("started"));
  EXPECT_EQ("UpdateInstaller: the package manager keeps the files of this copy\n", folder().read("messages"));
}

TEST_F(UpdateInstallerTest, NothingIsStartedWhenTheMarkerCannotBeLeft) {
  wait("Tallymoor.exe", script("2.0.0"));
  std::filesystem::permissions("updates", std::filesystem::perms(0777));
  std::filesystem::create_directory(OVERRIDE_MARKER);
  EXPECT_EQ(1, install());
  EXPECT_FALSE(folder().exists("started")) << "it would only come back here";
}

TEST_F(UpdateInstallerTest, ProgramThatOthersCanWriteToIsNotStarted) {
  wait("FxEx-2.0.0.dll", "new library");
  std::filesystem::permissions("Tallymoor.exe", std::filesystem::perms(0777));
  EXPECT_EQ(1, install());
  EXPECT_FALSE(folder().exists("started"));
}

} // namespace
} // namespace Tallymoor
