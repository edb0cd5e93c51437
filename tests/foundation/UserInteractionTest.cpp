#include "foundation/UserInteraction.h"
#include "foundation/RunTimeSettings.h"
#include "support/FakeUserInteraction.h"
#include "support/MessageOf.h"
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Kind = FakeUserInteraction::Kind;

TEST(UserInteractionTest, WithoutAWindowInstanceThrows) {
  EXPECT_FALSE(UserInteraction::exists());
  EXPECT_EQ(messageOf([] { UserInteraction::Instance(); }), u"MainWindow::Instance - no MainWindow yet!");
}

TEST(UserInteractionTest, TheInstanceIsTheOneSet) {
  {
    FakeUserInteraction user;
    EXPECT_TRUE(UserInteraction::exists());
    EXPECT_EQ(&UserInteraction::Instance(), &user);
  }
  EXPECT_FALSE(UserInteraction::exists());
}

TEST(UserInteractionTest, WaitCursorHasAScope) {
  FakeUserInteraction user;
  {
    const WaitCursor wait;
    EXPECT_EQ(user.openWaits(), 1);
  }
  EXPECT_EQ(user.openWaits(), 0);
}

TEST(UserInteractionTest, WaitCursorEndsEarlyOnce) {
  FakeUserInteraction user;
  {
    WaitCursor wait;
    wait.end();
    EXPECT_EQ(user.openWaits(), 0);
    wait.end();
  }
  EXPECT_EQ(user.calls(Kind::EndWait).size(), 1u);
}

TEST(UserInteractionTest, WaitCursorIsNotShownIfUnwanted) {
  { const WaitCursor wait; } // Without a window.
  FakeUserInteraction user;
  { const WaitCursor wait(false); }
  {
    const BackgroundPassScope pass;
    const WaitCursor wait;
  }
  EXPECT_TRUE(user.calls().empty());
}

TEST(FakeUserInteractionTest, AnswersInOrderAndRecordsCalls) {
  FakeUserInteraction user;
  user.answerQuestion(true);
  user.answerQuestion(false);
  user.answerChoice(1);
  user.answerDate(std::nullopt);
  user.answerRatio(4);
  EXPECT_TRUE(user.question(u"first?"));
  EXPECT_FALSE(user.question(u"second?"));
  EXPECT_EQ(user.chooseFromList(u"t", u"h", {u"a", u"b"}), 1u);
  EXPECT_FALSE(user.askDate(u"t", u"day?", Date(2026, 1, 1)));
  EXPECT_EQ(user.askRatio(u"t", u"ratio?", u"", 9, {2, 1}), (WholeRatio{4, 1}));
  user.reportException(u"Where failed.", XMLException(u"why"));
  EXPECT_EQ(user.texts(Kind::Question), (std::vector<String>{u"first?", u"second?"}));
  EXPECT_EQ(user.calls(Kind::AskDate).at(0).initialDate, Date(2026, 1, 1));
  EXPECT_EQ(user.texts(Kind::Error), std::vector<String>{u"Where failed. XMLException : why"});
}

TEST(FakeUserInteractionTest, UnscriptedQuestionsFailTheTest) {
  FakeUserInteraction user;
  EXPECT_NONFATAL_FAILURE(user.question(u"really?"), "no answer is scripted for: really?");
  EXPECT_NONFATAL_FAILURE(user.chooseFromList(u"t", u"which?", {}), "no answer is scripted for: which?");
}

TEST(FakeUserInteractionTest, AnswersThatNobodyAskedForFailTheTest) {
  EXPECT_NONFATAL_FAILURE(
      {
        FakeUserInteraction user;
        user.answerQuestion(true);
      },
      "a scripted answer to a question was not asked for");
}

class Steps : public HasLengthyFunctions {
public:
  void runLengthyFunction(Progress& progress, int argument) override {
    for (progress.setTotal(10); done < argument && !progress.isCancelled(); ++done)
      progress.step(1, u"");
  }
  int done = 0;
};

TEST(FakeUserInteractionTest, RunsLengthyWorkAndCancelsIt) {
  FakeUserInteraction user;
  Steps whole, cut;
  EXPECT_TRUE(user.runLengthy(u"caption", u"heading", 10, whole, 7));
  EXPECT_EQ(whole.done, 7);
  user.cancelLengthyAfter(3);
  EXPECT_FALSE(user.runLengthy(u"caption", u"heading", 10, cut, 7));
  EXPECT_EQ(cut.done, 3);
}

} // namespace
} // namespace Tallymoor
