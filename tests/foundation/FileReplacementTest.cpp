#include "foundation/FileReplacement.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "support/FileMode.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

size_t bytesUntilFailure = 0;
int writeCalls = 0;

ssize_t writeUntilFull(int file, const void* bytes, size_t count) {
  if (bytesUntilFailure == 0) {
    errno = ENOSPC;
    return -1;
  }
  const ssize_t written = ::write(file, bytes, std::min(count, bytesUntilFailure));
  bytesUntilFailure -= static_cast<size_t>(written);
  return written;
}

ssize_t writeInterruptedAndShort(int file, const void* bytes, size_t count) {
  if (++writeCalls % 2) {
    errno = EINTR;
    return -1;
  }
  return ::write(file, bytes, std::min<size_t>(count, 7));
}

ssize_t writeAndDie(int file, const void* bytes, size_t count) {
  if (::write(file, bytes, count / 2) >= 0)
    ::_exit(9);
  return -1;
}

int failSync(int) {
  errno = EIO;
  return -1;
}

int syncCalls = 0;

int interruptedSync(int file) {
  if (++syncCalls == 1) {
    errno = EINTR;
    return -1;
  }
  return ::fsync(file);
}

int syncError = 0;

/// Flushes the file, then fails to flush the folder.
int failSecondSync(int file) {
  if (++syncCalls == 1)
    return ::fsync(file);
  errno = syncError;
  return -1;
}

int renameCalls = 0;

int interruptedRename(const char* from, const char* to) {
  if (++renameCalls == 1) {
    errno = EINTR;
    return -1;
  }
  return ::rename(from, to);
}

int failRename(const char*, const char*) {
  errno = EXDEV;
  return -1;
}

class FileReplacementTest : public testing::Test {
protected:
  FileReplacementTest() { TestProfile::writeFile(path, "old"); }
  ~FileReplacementTest() override { FileOperations::current() = FileOperations::system(); }

  void write(const std::string& content) {
    replaceFile(path, [&](std::ostream& out) { out << content; });
  }
  /// The message of a failed write. Checks that the old file is unchanged and alone in its folder.
  String failure(const std::string& content) {
    const String message = messageOf([&] { write(content); });
    FileOperations::current() = FileOperations::system();
    EXPECT_EQ(TestProfile::readFile(path), "old");
    EXPECT_EQ(filesInFolder(), 1);
    return message;
  }
  int filesInFolder() {
    const std::filesystem::directory_iterator files(profile.folder() + "/files");
    return static_cast<int>(std::distance(begin(files), end(files)));
  }

  TestProfile profile;
  const String path = profile.path("files/Portfolios.xml");
};

TEST_F(FileReplacementTest, ReplacesTheContentAndLeavesNoTemporary) {
  write("new");
  EXPECT_EQ(TestProfile::readFile(path), "new");
  EXPECT_EQ(filesInFolder(), 1);
  removeFile(path);
  write("first");
  EXPECT_EQ(TestProfile::readFile(path), "first");
}

TEST_F(FileReplacementTest, LargeContentSurvivesInterruptionsAndShortWrites) {
  std::string content;
  for (int i = 0; i < 40000; ++i)
    content += std::to_string(i) + " ";
  write(content);
  EXPECT_EQ(TestProfile::readFile(path), content);
  FileOperations::current().write = writeInterruptedAndShort;
  FileOperations::current().sync = interruptedSync;
  syncCalls = 0;
  content += "more";
  write(content);
  EXPECT_EQ(TestProfile::readFile(path), content);
  EXPECT_EQ(syncCalls, 3); // Interrupted, repeated, then the folder.
}

TEST_F(FileReplacementTest, AFullDiskAtAnyMomentLeavesTheOldFile) {
  const std::string content(200000, 'x');
  for (const size_t bytes : {0, 1, 1000, 65535, 65536, 65537, 199999}) {
    bytesUntilFailure = bytes;
    FileOperations::current().write = writeUntilFull;
    EXPECT_EQ(failure(content), u"replaceFile - cannot write " + path + u": No space left on device")
        << bytes;
  }
}

TEST_F(FileReplacementTest, FailuresOfFlushingAndRenamingAreReported) {
  FileOperations::current().sync = failSync;
  EXPECT_EQ(failure("new"), u"replaceFile - cannot flush " + path + u": Input/output error");
  FileOperations::current().rename = failRename;
  EXPECT_EQ(failure("new"), u"replaceFile - cannot replace " + path + u": Invalid cross-device link");
}

TEST_F(FileReplacementTest, AnInterruptedRenameIsRepeated) {
  FileOperations::current().rename = interruptedRename;
  renameCalls = 0;
  write("new");
  EXPECT_EQ(renameCalls, 2);
  EXPECT_EQ(TestProfile::readFile(path), "new");
}

TEST_F(FileReplacementTest, AFailureToFlushTheFolderIsReported) {
  FileOperations::current().sync = failSecondSync;
  syncCalls = 0;
  syncError = EIO;
  EXPECT_EQ(messageOf([this] { write("new"); }),
            u"replaceFile - cannot flush the folder of " + path + u": Input/output error");
  EXPECT_EQ(TestProfile::readFile(path), "new");
  EXPECT_EQ(filesInFolder(), 1);
  syncCalls = 0;
  syncError = EINVAL; // From a file system that can't flush folders.
  write("newer");
  EXPECT_EQ(TestProfile::readFile(path), "newer");
}

TEST_F(FileReplacementTest, LeftoverTemporariesAtTheTargetOfALinkAreRemovedToo) {
  TestProfile::writeFile(profile.path("elsewhere/.tallymoor-abc.tmp"), "half");
  TestProfile::writeFile(profile.path("elsewhere/Portfolios.xml"), "records");
  std::filesystem::create_symlink(profile.path("elsewhere/Portfolios.xml").toUTF8(),
                                  profile.path("files/link.xml").toUTF8());
  removeLeftoverTemporaries(profile.path("files"));
  EXPECT_FALSE(TestProfile::fileExists(profile.path("elsewhere/.tallymoor-abc.tmp")));
  EXPECT_EQ(TestProfile::readFile(profile.path("files/link.xml")), "records");
}

TEST_F(FileReplacementTest, AMissingFolderIsReported) {
  const String nowhere = profile.path("nowhere/file");
  EXPECT_EQ(messageOf([&] { replaceFile(nowhere, [](std::ostream&) {}); }),
            u"replaceFile - cannot create " + nowhere + u": No such file or directory");
}

TEST_F(FileReplacementTest, AFailureOfTheWriterPassesThrough) {
  EXPECT_THROW(replaceFile(path,
                           [](std::ostream& out) {
                             out << "half";
                             throw XMLException(u"no value");
                           }),
               XMLException);
  EXPECT_EQ(TestProfile::readFile(path), "old");
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(FileReplacementTest, TheCheckSeesTheFinishedTemporaryAndMayRefuseIt) {
  std::string seen;
  const auto refuse = [&](const String& temporary) {
    seen = TestProfile::readFile(temporary);
    EXPECT_EQ(TestProfile::readFile(path), "old");
    throw XMLException(u"does not decode");
  };
  EXPECT_THROW(replaceFile(
                   path, [](std::ostream& out) { out << "new"; }, refuse),
               XMLException);
  EXPECT_EQ(seen, "new");
  EXPECT_EQ(TestProfile::readFile(path), "old");
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(FileReplacementTest, AWriterThatIsKilledLeavesTheOldFile) {
  const pid_t child = ::fork();
  if (child == 0) {
    FileOperations::current().write = writeAndDie;
    replaceFile(path, [](std::ostream& out) { out << "new content"; });
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_EQ(WEXITSTATUS(status), 9);
  EXPECT_EQ(TestProfile::readFile(path), "old");
  EXPECT_EQ(filesInFolder(), 2);
  TestProfile::writeFile(profile.path("files/.tallymoor-notes"), "the user's");
  removeLeftoverTemporaries(profile.path("files"));
  EXPECT_EQ(filesInFolder(), 2);
  EXPECT_EQ(TestProfile::readFile(path), "old");
  removeLeftoverTemporaries(profile.path("no such folder"));
}

TEST_F(FileReplacementTest, AccessRightsAndLinksStay) {
  const std::string file = path.toUTF8();
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  const String link = profile.path("link.xml");
  std::filesystem::create_symlink(file, link.toUTF8());
  replaceFile(link, [](std::ostream& out) { out << "through the link"; });
  EXPECT_TRUE(std::filesystem::is_symlink(link.toUTF8()));
  EXPECT_EQ(TestProfile::readFile(path), "through the link");
  EXPECT_EQ(modeOf(path), 0640u);
}

TEST_F(FileReplacementTest, ANewFileIsPrivateInAnyFolder) {
  const NoUmask umask;
  ASSERT_EQ(::chmod(profile.path("files").toUTF8().c_str(), 0777), 0);
  ASSERT_EQ(::chmod(path.toUTF8().c_str(), 0644), 0);
  const String fresh = profile.path("files/fresh.xml");
  unsigned whileWritten = 0;
  replaceFile(
      fresh, [](std::ostream& out) { out << "mine"; },
      [&](const String& temporary) { whileWritten = modeOf(temporary); });
  EXPECT_EQ(whileWritten, 0600u);
  EXPECT_EQ(modeOf(fresh), 0600u);
  copyFileReplacing(path, path + u".bak");
  EXPECT_EQ(modeOf(path + u".bak"), 0600u) << "of a file that others may read";
  write("new");
  EXPECT_EQ(modeOf(path), 0644u) << "what the user chose stays";
}

TEST_F(FileReplacementTest, AnEmptiedFileKeepsItsModeAndItsLinks) {
  ASSERT_EQ(::chmod(path.toUTF8().c_str(), 0640), 0);
  const String link = profile.path("link.xml");
  const String other = profile.path("other.xml");
  std::filesystem::create_symlink(path.toUTF8(), link.toUTF8());
  std::filesystem::create_hard_link(path.toUTF8(), other.toUTF8());
  EXPECT_TRUE(emptyFile(link));
  EXPECT_EQ(TestProfile::readFile(path), "");
  EXPECT_EQ(TestProfile::readFile(other), "");
  EXPECT_TRUE(std::filesystem::is_symlink(link.toUTF8()));
  EXPECT_EQ(modeOf(path), 0640u);
  EXPECT_FALSE(emptyFile(profile.path("none")));
  const String refusal = messageOf([this] { emptyFile(profile.path("files")); });
  EXPECT_TRUE(refusal.startsWith(u"removeFile - cannot remove ")) << refusal.toUTF8();
  FileOperations::current().sync = failSync;
  EXPECT_EQ(messageOf([this] { emptyFile(path); }),
            u"emptyFile - cannot empty " + path + u": Input/output error");
}

TEST_F(FileReplacementTest, AFileWithTheLongestNameIsReplaced) {
  const String name = profile.path("files/" + std::string(255, 'n'));
  replaceFile(name, [](std::ostream& out) { out << "long"; });
  EXPECT_EQ(TestProfile::readFile(name), "long");
}

TEST_F(FileReplacementTest, Copies) {
  const String copy = profile.path("files/copy");
  std::string content(100000, 'c');
  write(content);
  EXPECT_TRUE(copyFileReplacing(path, copy));
  EXPECT_EQ(TestProfile::readFile(copy), content);
  EXPECT_FALSE(copyFileReplacing(profile.path("none"), copy));
  EXPECT_EQ(TestProfile::readFile(copy), content);
  EXPECT_THROW(copyFileReplacing(profile.path("files"), copy), Exception);
  EXPECT_EQ(TestProfile::readFile(copy), content);
}

TEST_F(FileReplacementTest, SameContent) {
  const String other = profile.path("files/other");
  EXPECT_FALSE(haveSameContent(path, other));
  EXPECT_FALSE(haveSameContent(other, path));
  TestProfile::writeFile(other, "old");
  EXPECT_TRUE(haveSameContent(path, other));
  TestProfile::writeFile(other, "older");
  EXPECT_FALSE(haveSameContent(path, other));
  EXPECT_FALSE(haveSameContent(other, path));
  EXPECT_FALSE(haveSameContent(profile.path("files"), profile.path("files"))) << "a folder";
}

TEST_F(FileReplacementTest, Presence) {
  EXPECT_EQ(filePresence(path), FilePresence::RegularFile);
  EXPECT_EQ(filePresence(profile.path("none")), FilePresence::Missing);
  EXPECT_EQ(filePresence(profile.path("no folder/none")), FilePresence::Missing);
  EXPECT_EQ(filePresence(profile.path("files")), FilePresence::Unusable);
  EXPECT_EQ(filePresence(path + u"/below a file"), FilePresence::Unusable);
  std::filesystem::create_symlink("/nowhere/at/all", profile.path("dangling").toUTF8());
  EXPECT_EQ(filePresence(profile.path("dangling")), FilePresence::Unusable);
  std::filesystem::create_symlink(path.toUTF8(), profile.path("link").toUTF8());
  EXPECT_EQ(filePresence(profile.path("link")), FilePresence::RegularFile);
}

TEST_F(FileReplacementTest, Removal) {
  EXPECT_TRUE(removeFile(path));
  EXPECT_FALSE(removeFile(path));
  const String folder = profile.path("files");
  const String refusal = messageOf([&] { removeFile(folder); });
  EXPECT_TRUE(refusal.startsWith(u"removeFile - cannot remove " + folder + u": ")) << refusal.toUTF8();
}

} // namespace
} // namespace Tallymoor
