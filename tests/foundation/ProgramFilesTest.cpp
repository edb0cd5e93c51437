#include "foundation/ProgramFiles.h"
#include "foundation/Constants.h"
#include "support/InstalledFolder.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ProgramFiles, StemsMatchTheConstants) {
  std::vector<std::string> constants;
  for (const String& name : {APP_EXE, UPDATE_INSTALLER, TOOLKIT_DLL, EXTENSIONS_DLL, XML_DLL})
    constants.push_back(name.toUTF8());
  EXPECT_EQ(constants, programFileStems());
  EXPECT_TRUE(isProgramFileName(UPDATE_INSTALLER_EXE.toUTF8(), UPDATE_INSTALLER.toUTF8()));
}

TEST(ProgramFiles, NamesBelongToTheirStems) {
  EXPECT_EQ("Tallymoor.exe", stemOfProgramFile("Tallymoor.exe"));
  EXPECT_EQ("UpdateInstaller", stemOfProgramFile("UpdateInstaller.exe"));
  EXPECT_EQ("FOXDLL", stemOfProgramFile("FOXDLL-1.6.58.dll"));
  EXPECT_EQ("FxEx", stemOfProgramFile("FxEx.dll"));
  EXPECT_EQ("xerces-c", stemOfProgramFile("xerces-c_3.2.4.dll"));
}

TEST(ProgramFiles, OtherNamesBelongToNoStem) {
  for (const char* name : {"", "..", "tallymoor.exe", "Tallymoor.exe.bak", "UpdateInstaller",
                           "UpdateInstaller2.exe", "FOXDLL", "FOXDLL.so", ".dll", "FOXDLL/1.dll",
                           "FOXDLL\\1.dll", "FOXDLL..dll", "FOXDLL 1.dll", "../FOXDLL.dll", "libFOXDLL.dll"})
    EXPECT_EQ("", stemOfProgramFile(name)) << name;
  EXPECT_EQ("", stemOfProgramFile("FOXDLL" + std::string(100, '1') + ".dll")) << "too long";
}

TEST(ProgramFiles, FilesWithAStemAreFoundInAnyCaseWithoutFolders) {
  const TestProfile profile;
  const InstalledFolder folder(profile);
  folder.write("foxdll.txt", "");
  std::filesystem::create_directory("FOXDLL-folder");
  EXPECT_THAT(filesWithStem("FOXDLL"), ElementsAre("FOXDLL-1.6.57.dll", "foxdll.txt"));
  EXPECT_THAT(filesWithStem("nothing"), IsEmpty());
}

TEST(ProgramFiles, TheReasonOfAFailureIsWrittenCompletelyOrNotAtAll) {
  const TestProfile profile;
  const InstalledFolder folder(profile);
  leaveInstallerFailure("a disk was full");
  EXPECT_EQ("a disk was full\n", folder.read(INSTALLER_FAILURE));
  std::filesystem::remove(INSTALLER_FAILURE);
  std::filesystem::create_directory(INSTALLER_FAILURE);
  leaveInstallerFailure("a disk was full");
  EXPECT_FALSE(folder.exists(std::string(INSTALLER_FAILURE) + ".new"));
}

TEST(ProgramFiles, AFailureToMoveUpdatesUpIsReported) {
  const TestProfile profile;
  const InstalledFolder folder(profile);
  EXPECT_TRUE(moveUpCompleteUpdates()) << "there are none";
  folder.write("updates/complete/one", "1");
  folder.write("updates/complete/two", "2");
  folder.write("updates/two/in the way", "");
  EXPECT_FALSE(moveUpCompleteUpdates());
  std::filesystem::remove_all("updates/two");
  EXPECT_TRUE(moveUpCompleteUpdates());
  EXPECT_EQ("2", folder.read("updates/two"));
  EXPECT_EQ("1", folder.read("updates/one"));
  EXPECT_FALSE(folder.exists("updates/complete"));
}

TEST(ProgramFiles, OwnFolderIsOneThatNobodyElseCanWriteTo) {
  const TestProfile profile;
  const InstalledFolder folder(profile);
  EXPECT_TRUE(isOwnFolder("."));
  EXPECT_FALSE(isOwnFolder("Tallymoor.exe"));
  EXPECT_FALSE(isOwnFolder("missing"));
  std::filesystem::permissions(".", std::filesystem::perms(0775));
  EXPECT_FALSE(isOwnFolder("."));
}

TEST(ProgramFiles, AMarkerIdentifiesAPackage) {
  const TestProfile profile;
  const InstalledFolder folder(profile);
  EXPECT_FALSE(belongsToPackage());
  folder.write("package.tallymoor", "");
  EXPECT_TRUE(belongsToPackage());
}

} // namespace
} // namespace Tallymoor
