#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/FileReplacement.h"
#include "support/FileMode.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <cerrno>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

int calls = 0;
int failingCall = 0; ///< Counted from 1.

ssize_t writeOrFail(int file, const void* bytes, size_t count) {
  if (++calls < failingCall)
    return ::write(file, bytes, count);
  errno = EIO;
  return -1;
}

ssize_t writeOrDie(int file, const void* bytes, size_t count) {
  if (++calls < failingCall)
    return ::write(file, bytes, count);
  if (::write(file, bytes, count / 2) >= 0)
    ::_exit(9);
  return -1;
}

int syncOrDie(int file) {
  if (++calls < failingCall)
    return ::fsync(file);
  ::_exit(9);
}

int failRename(const char*, const char*) {
  errno = EROFS;
  return -1;
}

/// A file with a second hard link in another folder.
class LinkedFileTest : public testing::Test {
protected:
  LinkedFileTest() {
    TestProfile::writeFile(path, "the old content, which is longer");
    std::filesystem::create_directories(profile.folder() + "/elsewhere");
    std::filesystem::create_hard_link(path.toUTF8(), other.toUTF8());
    calls = 0;
  }
  ~LinkedFileTest() override { FileOperations::current() = FileOperations::system(); }

  void write(const std::string& content) {
    replaceFile(path, [&](std::ostream& out) { out << content; });
  }
  bool isStillLinked() const { return std::filesystem::equivalent(path.toUTF8(), other.toUTF8()); }
  int filesInFolder() const {
    const std::filesystem::directory_iterator files(profile.folder() + "/files");
    return static_cast<int>(std::distance(begin(files), end(files)));
  }
  /// Writes in a child that dies at this call.
  void writeAndDie(int call, const std::string& content,
                   const std::function<void(FileOperations&)>& setUp) const {
    const pid_t child = ::fork();
    if (child == 0) {
      calls = 0;
      failingCall = call;
      setUp(FileOperations::current());
      replaceFile(path, [&](std::ostream& out) { out << content; });
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 9);
  }

  TestProfile profile;
  const String path = profile.path("files/Portfolios.xml");
  const String other = profile.path("elsewhere/mine.xml");
};

TEST_F(LinkedFileTest, AllHardLinksGetTheNewContent) {
  for (const std::string& content : {std::string("short"), std::string(200000, 'l'), std::string()}) {
    write(content);
    EXPECT_EQ(TestProfile::readFile(path), content);
    EXPECT_EQ(TestProfile::readFile(other), content);
    EXPECT_TRUE(isStillLinked());
    EXPECT_EQ(filesInFolder(), 1);
  }
}

TEST_F(LinkedFileTest, TheModeStays) {
  std::filesystem::permissions(path.toUTF8(), std::filesystem::perms(0640));
  write("new");
  EXPECT_EQ(modeOf(path), 0640u);
  EXPECT_TRUE(isStillLinked());
}

TEST_F(LinkedFileTest, ALinkBehindASymbolicLinkIsKept) {
  const String link = profile.path("link.xml");
  std::filesystem::create_symlink(path.toUTF8(), link.toUTF8());
  replaceFile(link, [](std::ostream& out) { out << "through both"; });
  EXPECT_EQ(TestProfile::readFile(other), "through both");
  EXPECT_TRUE(isStillLinked());
}

TEST_F(LinkedFileTest, AWriterThatDiesLeavesTheOldContentOrTheNextStartFinishesTheNew) {
  const std::string old = TestProfile::readFile(path);
  const std::string content = "the new content, which is much longer than what was there before it";
  // Writes of the temporary, the note and the file itself.
  for (const int call : {1, 2, 3}) {
    writeAndDie(call, content, [](FileOperations& operations) { operations.write = writeOrDie; });
    EXPECT_GT(filesInFolder(), 1) << call;
    if (call < 3)
      EXPECT_EQ(TestProfile::readFile(path), old) << call;
    else
      EXPECT_NE(TestProfile::readFile(path), content) << "half of it is written";
    removeLeftoverTemporaries(profile.path("files"));
    EXPECT_EQ(TestProfile::readFile(path), call < 3 ? old : content) << call;
    EXPECT_TRUE(isStillLinked()) << call;
    EXPECT_EQ(filesInFolder(), 1) << call;
  }
}

TEST_F(LinkedFileTest, AfterTheNoteIsFlushedTheNewContentCounts) {
  const std::string old = TestProfile::readFile(path);
  // Flushes of the temporary, the note, the folder and the file itself.
  for (const int call : {1, 2, 3, 4}) {
    writeAndDie(call, "new", [](FileOperations& operations) { operations.sync = syncOrDie; });
    removeLeftoverTemporaries(profile.path("files"));
    EXPECT_EQ(TestProfile::readFile(path), call == 1 ? old : "new") << call;
    EXPECT_TRUE(isStillLinked()) << call;
    EXPECT_EQ(filesInFolder(), 1) << call;
    replaceFile(path, [&](std::ostream& out) { out << old; });
  }
}

TEST_F(LinkedFileTest, SavingTheContentBreaksTheLinkIfNeededAndReportsIt) {
  FileOperations::current().write = writeOrFail;
  failingCall = 3; // The flush of the file itself.
  EXPECT_EQ(messageOf([this] { write("new"); }),
            u"replaceFile - wrote the file, but could not keep the hard link of " + path +
                u": Input/output error");
  EXPECT_EQ(TestProfile::readFile(path), "new");
  EXPECT_FALSE(isStillLinked());
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(LinkedFileTest, AFailedWriteIsCompletedAtTheNextStart) {
  FileOperations::current().write = writeOrFail;
  FileOperations::current().rename = failRename;
  failingCall = 3;
  EXPECT_EQ(messageOf([this] { write("new"); }),
            u"replaceFile - cannot replace " + path + u": Read-only file system");
  EXPECT_EQ(filesInFolder(), 3);
  calls = 2;
  EXPECT_EQ(messageOf([this] { removeLeftoverTemporaries(profile.path("files")); }),
            u"replaceFile - cannot replace " + path + u": Read-only file system");
  EXPECT_EQ(filesInFolder(), 3);
  FileOperations::current() = FileOperations::system();
  removeLeftoverTemporaries(profile.path("files"));
  EXPECT_EQ(TestProfile::readFile(path), "new");
  EXPECT_TRUE(isStillLinked());
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(LinkedFileTest, AStartContinuesAfterBreakingALink) {
  writeAndDie(3, "new", [](FileOperations& operations) { operations.write = writeOrDie; });
  FileOperations::current().write = writeOrFail;
  calls = 0;
  failingCall = 1;
  removeLeftoverTemporaries(profile.path("files"));
  EXPECT_EQ(TestProfile::readFile(path), "new");
  EXPECT_FALSE(isStillLinked());
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(LinkedFileTest, AFailureBeforeTheFileIsTouchedLeavesTheOldContentAndNothingBeside) {
  const std::string old = TestProfile::readFile(path);
  FileOperations::current().write = writeOrFail;
  failingCall = 2; // The write of the note.
  EXPECT_EQ(messageOf([this] { write("new"); }),
            u"replaceFile - cannot write beside " + path + u": Input/output error");
  EXPECT_EQ(TestProfile::readFile(path), old);
  EXPECT_TRUE(isStillLinked());
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(LinkedFileTest, ForeignNotesChangeNothing) {
  const std::string old = TestProfile::readFile(path);
  const String temporary = profile.path("files/.tallymoor-abc.tmp");
  const String note = profile.path("files/.tallymoor-abc.for");
  const std::string notes[] = {"Portfolios.xml",          // Incomplete.
                               "",                        //
                               "\n",                      //
                               "../elsewhere/mine.xml\n", // Another folder.
                               "none.xml\n",
                               std::string(300, 'n') + "\n"};
  for (const std::string& content : notes) {
    TestProfile::writeFile(temporary, "planted");
    TestProfile::writeFile(note, content);
    removeLeftoverTemporaries(profile.path("files"));
    EXPECT_EQ(TestProfile::readFile(path), old) << content;
    EXPECT_EQ(filesInFolder(), 1) << content;
  }
  TestProfile::writeFile(note, "Portfolios.xml\n");
  std::filesystem::create_symlink(other.toUTF8(), temporary.toUTF8());
  removeLeftoverTemporaries(profile.path("files"));
  EXPECT_EQ(TestProfile::readFile(path), old) << "a temporary is never a link";
  EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(LinkedFileTest, ACopyIsNeverAHardLinkToItsSource) {
  const std::string old = TestProfile::readFile(path);
  const String backup = profile.path("files/Portfolios.xml.bak");
  std::filesystem::create_hard_link(path.toUTF8(), backup.toUTF8());
  EXPECT_TRUE(copyFileReplacing(path, backup));
  write("new");
  EXPECT_EQ(TestProfile::readFile(backup), old);
  EXPECT_TRUE(isStillLinked());
}

} // namespace
} // namespace Tallymoor
