#include "session/Journal.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "support/FailureOf.h"
#include "support/FileMode.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using ::testing::HasSubstr;

const std::string BEFORE = "<SharePortfolio><String>Trading</String></SharePortfolio>";
const std::string AFTER = "<SharePortfolio><String>Trading</String><HeldShares/></SharePortfolio>";

Change change(const String& sentence, Change::Kind kind = Change::Kind::Made) {
  Change made;
  made.kind = kind;
  made.moment = 1'700'000'000;
  made.sentence = sentence;
  if (kind != Change::Kind::Saved)
    made.portfolios.push_back(ChangedPortfolio::between(PortfolioText::of(u"Trading", 0, BEFORE),
                                                        PortfolioText::of(u"Trading", 0, AFTER)));
  return made;
}

std::vector<String> sentencesOf(const Journal& journal) {
  std::vector<String> sentences;
  for (const Journal::Entry& entry : journal.entries())
    sentences.push_back(entry.sentence);
  return sentences;
}

class JournalTest : public ::testing::Test {
protected:
  ~JournalTest() override { FileOperations::current() = FileOperations::system(); }

  String path() const { return profile.dataFolder() + u"Journal"; }
  std::string bytes() const { return TestProfile::readFile(path()); }
  void put(const std::string& bytes) const { TestProfile::writeFile(path(), bytes); }
  /// A journal with these changes.
  void write(const std::vector<String>& sentences) const {
    Journal journal(path());
    for (const String& sentence : sentences) {
      Change made = change(sentence);
      journal.append(made);
    }
  }

  TestProfile profile;
};

TEST_F(JournalTest, ANewJournalIsEmptyAndForTheUserAlone) {
  const NoUmask open;
  const Journal journal(path());
  EXPECT_TRUE(journal.entries().empty());
  EXPECT_EQ(0600u, modeOf(path()));
  EXPECT_EQ(0700u, modeOf(String(std::filesystem::path(path().toUTF8()).parent_path().c_str())));
  EXPECT_EQ("Tallymoor journal 1\n", bytes());
}

TEST_F(JournalTest, WhatWasAppendedIsReadAgain) {
  Change first = change(u"Purchase of 100 ABC.AX \u20ac");
  Change undone = change(u"Purchase", Change::Kind::Undone);
  undone.other = 1;
  undone.portfolios = {first.portfolios[0].reversed()};
  Change saved = change(u"", Change::Kind::Saved);
  {
    Journal journal(path());
    journal.append(first);
    journal.append(undone);
    journal.append(saved);
    EXPECT_EQ(3u, journal.entries().size());
  }
  Journal journal(path());
  ASSERT_EQ(3u, journal.entries().size());
  EXPECT_EQ(first, journal.read(journal.entries()[0]));
  EXPECT_EQ(undone, journal.read(journal.entries()[1]));
  EXPECT_EQ(saved, journal.read(journal.entries()[2]));
  EXPECT_EQ(1u, first.number);
  EXPECT_EQ(2u, undone.number);
  EXPECT_EQ(std::vector<String>{u"Trading"}, journal.entries()[0].portfolios);
  EXPECT_FALSE(journal.lostTornEntry());
  EXPECT_EQ(0u, journal.damagedPlaces());
}

TEST_F(JournalTest, AChangeIsAppliedOnlyToTheRecordsBeforeIt) {
  const ChangedPortfolio made = ChangedPortfolio::between(PortfolioText::of(u"Trading", 0, BEFORE),
                                                          PortfolioText::of(u"Trading", 0, AFTER));
  EXPECT_EQ(AFTER, made.appliedTo(BEFORE));
  EXPECT_EQ(BEFORE, made.reversed().appliedTo(AFTER));
  EXPECT_EQ(std::nullopt, made.appliedTo(AFTER));
  EXPECT_EQ(std::nullopt, made.appliedTo(BEFORE + " "));
}

TEST_F(JournalTest, AnEntryThatWasNotWrittenToItsEndIsTakenAway) {
  write({u"one", u"two"});
  const std::string whole = bytes();
  write({u"three"});
  const std::string all = bytes();
  for (std::size_t length = whole.size() + 1; length < all.size(); ++length) {
    put(all.substr(0, length));
    {
      const Journal journal(path());
      EXPECT_TRUE(journal.lostTornEntry()) << length;
      EXPECT_EQ((std::vector<String>{u"one", u"two"}), sentencesOf(journal)) << length;
    }
    EXPECT_EQ(whole, bytes()) << length;
  }
}

TEST_F(JournalTest, AnEndOfZerosIsTakenAway) {
  write({u"one"});
  const std::string whole = bytes();
  put(whole + std::string(5000, '\0'));
  EXPECT_TRUE(Journal(path()).lostTornEntry());
  EXPECT_EQ(whole, bytes());
}

TEST_F(JournalTest, AFirstLineThatWasNotWrittenToItsEndIsWrittenAgain) {
  for (const char* start : {"", "T", "Tallymoor jour"}) {
    put(start);
    write({u"one"});
    EXPECT_EQ(std::vector<String>{u"one"}, sentencesOf(Journal(path()))) << start;
  }
}

TEST_F(JournalTest, AFlippedBitCostsOneEntryAtMost) {
  write({u"one", u"two", u"three"});
  const std::string all = bytes();
  for (std::size_t byte = 0; byte < all.size(); ++byte) {
    std::string damaged = all;
    damaged[byte] = static_cast<char>(damaged[byte] ^ (1 << (byte % 8)));
    put(damaged);
    Journal journal(path());
    EXPECT_LE(2u, journal.entries().size()) << byte;
    for (const Journal::Entry& entry : journal.entries())
      EXPECT_EQ(change(entry.sentence).portfolios, journal.read(entry).portfolios) << byte;
    EXPECT_TRUE(journal.entries().size() == 3 || journal.damagedPlaces() == 1 || journal.lostTornEntry())
        << byte;
  }
}

TEST_F(JournalTest, WhatIsAppendedBehindADamagedEndIsRead) {
  write({u"one", u"two"});
  std::string damaged = bytes();
  damaged.back() = static_cast<char>(damaged.back() ^ 1);
  put(damaged);
  write({u"three"});
  const Journal journal(path());
  EXPECT_EQ((std::vector<String>{u"one", u"three"}), sentencesOf(journal));
  EXPECT_EQ(1u, journal.damagedPlaces());
}

TEST_F(JournalTest, AnotherFileIsRefusedAndLeftAsItIs) {
  for (const char* content : {"<Portfolios/>", "Tallymoor journal 2\nnew form"}) {
    put(content);
    EXPECT_EQ(u"Journal - " + path() + u" is no journal of this program.",
              failureOf<Exception>([this] { const Journal journal(path()); }));
    EXPECT_EQ(content, bytes());
  }
}

TEST_F(JournalTest, AnEntryThatVanishedFromTheFileIsNotRead) {
  write({u"one"});
  Journal journal(path());
  std::filesystem::resize_file(path().toUTF8(), 30);
  EXPECT_THAT(failureOf<Exception>([&] { journal.read(journal.entries().at(0)); }).toUTF8(),
              HasSubstr("\"one\" can't be read any more"));
}

std::size_t roomLeft = 0;

ssize_t writeUntilFull(int file, const void* content, size_t count) {
  if (roomLeft == 0) {
    errno = ENOSPC;
    return -1;
  }
  const ssize_t written = ::write(file, content, std::min(count, roomLeft));
  roomLeft -= static_cast<std::size_t>(written);
  return written;
}

ssize_t writeOneByteOrInterrupted(int file, const void* content, size_t) {
  static bool interrupted = false;
  interrupted = !interrupted;
  errno = EINTR;
  return interrupted ? -1 : ::write(file, content, 1);
}

int failSync(int) {
  errno = EIO;
  return -1;
}

TEST_F(JournalTest, ShortAndInterruptedWritesAreContinued) {
  FileOperations::current().write = writeOneByteOrInterrupted;
  write({u"one", u"two"});
  EXPECT_EQ((std::vector<String>{u"one", u"two"}), sentencesOf(Journal(path())));
}

TEST_F(JournalTest, OnAFullDiskNothingIsAppendedAndTheReasonTold) {
  write({u"one"});
  const std::string whole = bytes();
  Change made = change(u"two");
  for (roomLeft = 0; roomLeft < 60; ++roomLeft) {
    const std::size_t room = roomLeft;
    Journal journal(path());
    FileOperations::current().write = writeUntilFull;
    EXPECT_EQ(u"Journal - cannot write " + path() + u": No space left on device",
              failureOf<Exception>([&] { journal.append(made); }));
    FileOperations::current() = FileOperations::system();
    EXPECT_EQ(whole, bytes()) << room;
    EXPECT_EQ(1u, journal.entries().size());
    roomLeft = room;
  }
  Journal journal(path());
  journal.append(made);
  EXPECT_EQ((std::vector<String>{u"one", u"two"}), sentencesOf(Journal(path())));
}

TEST_F(JournalTest, WhatCouldNotBeFlushedIsNotKept) {
  write({u"one"});
  const std::string whole = bytes();
  Journal journal(path());
  Change made = change(u"two");
  FileOperations::current().sync = failSync;
  EXPECT_EQ(u"Journal - cannot flush " + path() + u": Input/output error",
            failureOf<Exception>([&] { journal.append(made); }));
  EXPECT_EQ(whole, bytes());
}

TEST_F(JournalTest, TheOldestChangesGoButNoneSinceTheLastSave) {
  const auto fill = [this](bool save) {
    std::filesystem::remove(path().toUTF8());
    Journal journal(path());
    for (int i = 0; i < 100; ++i) {
      Change made = change(String::fromLong(i));
      made.moment += i;
      journal.append(made);
      if (i == 89 && save) {
        Change saved = change(u"", Change::Kind::Saved);
        saved.moment = made.moment;
        journal.append(saved);
      }
    }
  };
  fill(true);
  Journal journal(path());
  const std::size_t size = bytes().size();
  const std::int64_t newest = journal.entries().back().moment;
  journal.thin({1000, size}, newest);
  EXPECT_EQ(101u, journal.entries().size());
  journal.thin({1000, size / 2}, newest);
  EXPECT_GT(size / 2, bytes().size());
  EXPECT_LT(30u, journal.entries().size());
  EXPECT_EQ(u"99", journal.entries().back().sentence);
  EXPECT_EQ(sentencesOf(journal), sentencesOf(Journal(path())));
  EXPECT_EQ(u"99", journal.read(journal.entries().back()).sentence);
  journal.thin({1000, 10}, newest);
  EXPECT_EQ(Change::Kind::Saved, journal.entries().front().kind);
  EXPECT_EQ(11u, journal.entries().size());
  Change next = change(u"next");
  journal.append(next);
  EXPECT_EQ(102u, next.number);
  EXPECT_EQ(0600u, modeOf(path()));

  fill(true);
  Journal old(path());
  old.thin({49, size}, newest);
  EXPECT_EQ(u"50", old.entries().front().sentence);

  fill(false);
  Journal unsaved(path());
  unsaved.thin({0, 10}, newest + 1000);
  EXPECT_EQ(100u, unsaved.entries().size());
}

} // namespace
} // namespace Tallymoor
