#include "market/CommandPrices.h"
#include "market/SourceFailure.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class CommandPricesTest : public testing::Test {
protected:
  /// A script as the user's command, with these words behind it.
  std::vector<String> script(const std::string& text, std::vector<String> words = {}) {
    const String path = m_profile.path("prices.sh");
    TestProfile::writeFile(path, "#!/bin/sh\n" + text);
    std::filesystem::permissions(path.toUTF8(), std::filesystem::perms::owner_all);
    words.insert(words.begin(), path);
    return words;
  }
  static AnsweredHistory run(const std::vector<String>& words, const String& code = u"ABC.AX",
                             std::chrono::milliseconds time = CommandPrices::TIME) {
    return CommandPrices(u"Mine", words, {}, time).history(code, {Date(2026, 1, 5), Date(2026, 2, 28)}, {});
  }

  TestProfile m_profile;
};

TEST_F(CommandPricesTest, ReadsWhatTheCommandWrites) {
  const AnsweredHistory history =
      run(script("printf 'Date,Close\\n2026-02-26,10.1\\n2026-02-27,10.5\\n2026-03-01,11\\n'"));
  ASSERT_EQ(history.prices.size(), 2u);
  EXPECT_EQ(history.prices.at(Date(2026, 2, 27)).close, 10.5);
}

TEST_F(CommandPricesTest, WordsBecomeArgumentsAndNoShellReadsThem) {
  const String path = m_profile.path("arguments");
  run(script("for word; do echo \"$word\" >>" + path.toUTF8() +
                 "; done; printf 'Date,Close\\n2026-02-26,1\\n'",
             {u"--code={CODE}", u"{FROM:yyyyMMdd}", u"a b;$(touch x)"}),
      u"A B;C");
  EXPECT_EQ(TestProfile::readFile(path), "--code=A B;C\n20260105\na b;$(touch x)\n");
}

TEST_F(CommandPricesTest, ACodeThatWouldBeAnOptionIsNotServed) {
  const CommandPrices prices(u"Mine", {u"true"}, {});
  EXPECT_FALSE(prices.serves(u"-rf"));
  EXPECT_TRUE(prices.serves(u"ABC"));
}

TEST_F(CommandPricesTest, AFailureIsToldWithTheCommandsOwnWords) {
  EXPECT_EQ(messageOf([&] { run(script("echo no such stock >&2; exit 3")); }),
            u"the command failed with status 3: no such stock");
  EXPECT_TRUE(messageOf([] { run({u"/nowhere/at-all"}); }).startsWith(u"the command could not be started: "));
  EXPECT_THROW(run(script("echo nonsense")), Exception);
}

TEST_F(CommandPricesTest, ACommandThatHangsOrFloodsIsEnded) {
  EXPECT_EQ(messageOf([&] { run(script("sleep 600 & sleep 600"), u"ABC", std::chrono::milliseconds(100)); }),
            u"the command did not end within its time");
  EXPECT_EQ(messageOf([&] { run(script("yes")); }), u"the command wrote more than 10 MB");
}

TEST_F(CommandPricesTest, AnUnknownVariableIsRefused) {
  EXPECT_THROW(CommandPrices(u"Mine", {u"true", u"{NOTHING}"}, {}), Exception);
  EXPECT_THROW(CommandPrices(u"Mine", {}, {}), Exception);
}

} // namespace
} // namespace Tallymoor
