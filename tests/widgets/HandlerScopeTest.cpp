#include "widgets/HandlerScope.h"
#include "support/FakeUserInteraction.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

MATCHER_P(StartsWith, text, "") {
  return arg.startsWith(text);
}

class HandlerScopeTest : public ::testing::Test {
protected:
  std::function<void()> note(const std::string& text) {
    return [this, text] { m_done.push_back(text); };
  }

  std::vector<std::string> m_done;
  int m_first = 0, m_second = 0; ///< Owners.
};

TEST_F(HandlerScopeTest, RunsAtOnceWhenNoHandlerRuns) {
  EXPECT_FALSE(HandlerScope::running());
  HandlerScope::whenDone(&m_first, note("a"));
  EXPECT_THAT(m_done, ElementsAre("a"));
  EXPECT_THROW(HandlerScope::whenDone(&m_first, [] { throw Exception(u"refused"); }), Exception);
}

TEST_F(HandlerScopeTest, WaitsForTheOutermostHandlerAndKeepsTheOrder) {
  {
    const HandlerScope outer;
    {
      const HandlerScope inner;
      HandlerScope::whenDone(&m_first, note("a"));
      HandlerScope::whenDone(&m_second, note("b"));
    }
    EXPECT_TRUE(HandlerScope::running());
    EXPECT_TRUE(m_done.empty());
  }
  EXPECT_THAT(m_done, ElementsAre("a", "b"));
}

TEST_F(HandlerScopeTest, LaterWorkOfAnOwnerReplacesEarlierWork) {
  {
    const HandlerScope scope;
    HandlerScope::whenDone(&m_first, note("old"));
    HandlerScope::whenDone(&m_second, note("b"));
    HandlerScope::whenDone(&m_first, note("new"));
  }
  EXPECT_THAT(m_done, ElementsAre("b", "new"));
}

TEST_F(HandlerScopeTest, WorkOfADestroyedOwnerIsDropped) {
  {
    const HandlerScope scope;
    HandlerScope::whenDone(&m_first, note("a"));
    HandlerScope::whenDone(&m_second, note("b"));
    HandlerScope::forget(&m_first);
  }
  EXPECT_THAT(m_done, ElementsAre("b"));
}

TEST_F(HandlerScopeTest, WorkThatRunsLateAsksForMoreAndGetsItAtOnce) {
  {
    const HandlerScope scope;
    HandlerScope::whenDone(&m_first, [this] {
      HandlerScope::whenDone(&m_second, note("inner"));
      m_done.push_back("outer");
    });
  }
  EXPECT_THAT(m_done, ElementsAre("inner", "outer"));
}

TEST_F(HandlerScopeTest, HandlersInsideLateWorkServeNothingInItsMiddle) {
  {
    const HandlerScope scope;
    HandlerScope::whenDone(&m_first, [this] {
      {
        const HandlerScope nested;
        HandlerScope::whenDone(&m_second, note("b"));
      }
      m_done.push_back("a");
    });
  }
  EXPECT_THAT(m_done, ElementsAre("a", "b"));
}

TEST_F(HandlerScopeTest, AModalDialogsOwnWorkWaitsForTheHandlersInsideItAlone) {
  const int dialog = 0;
  const HandlerScope opener;
  {
    const ModalLoopScope loop(&dialog);
    HandlerScope::whenDone(&m_first, note("at once"), &dialog);
    {
      const HandlerScope inside;
      HandlerScope::whenDone(&m_first, note("dialog"), &dialog);
      EXPECT_THAT(m_done, ElementsAre("at once"));
    }
    EXPECT_THAT(m_done, ElementsAre("at once", "dialog"));
  }
}

TEST_F(HandlerScopeTest, AModalDialogDoesNotServeTheWorkOfTheWindowBehindIt) {
  const int dialog = 0, window = 0;
  {
    const HandlerScope opener;
    {
      const ModalLoopScope loop(&dialog);
      {
        const HandlerScope inside;
        HandlerScope::whenDone(&m_first, note("window"), &window);
        HandlerScope::whenDone(&m_second, note("node"));
      }
      EXPECT_TRUE(m_done.empty());
    }
    EXPECT_TRUE(m_done.empty());
  }
  EXPECT_THAT(m_done, ElementsAre("window", "node"));
}

TEST_F(HandlerScopeTest, WorkLeftByADialogRunsOutside) {
  const int dialog = 0;
  {
    const HandlerScope opener;
    {
      const ModalLoopScope loop(&dialog);
      try {
        const HandlerScope inside;
        HandlerScope::whenDone(&m_first, note("left"), &dialog);
        throw 1;
      } catch (int) {
      }
    }
    EXPECT_TRUE(m_done.empty());
  }
  EXPECT_THAT(m_done, ElementsAre("left"));
}

TEST_F(HandlerScopeTest, TheHandlerThatOpenedADialogDoesNotRunInItsLoop) {
  const int dialog = 0;
  const HandlerScope opener;
  const ModalLoopScope loop(&dialog);
  EXPECT_TRUE(HandlerScope::running());
  EXPECT_FALSE(HandlerScope::running(&dialog));
  const HandlerScope inside;
  EXPECT_TRUE(HandlerScope::running(&dialog));
}

TEST_F(HandlerScopeTest, AFailureOfDeferredWorkIsReportedForTheHandlerThatDeferredIt) {
  FakeUserInteraction user;
  guardedHandler(u"Outer failed.", [this] {
    guardedHandler(u"Inner failed.",
                   [this] { HandlerScope::whenDone(&m_first, [] { throw Exception(u"no records"); }); });
    HandlerScope::whenDone(&m_second, note("b"));
  });
  EXPECT_THAT(user.texts(FakeUserInteraction::Kind::Error),
              ElementsAre("Inner failed. Exception : no records"));
  EXPECT_THAT(m_done, ElementsAre("b"));
}

TEST_F(HandlerScopeTest, GuardedHandlerReportsAndCountsAsHandled) {
  FakeUserInteraction user;
  EXPECT_EQ(1, guardedHandler(u"Table::onX failed.", [] {
              EXPECT_TRUE(bigMutex().heldByThisThread());
              throw Exception(u"bad");
            }));
  EXPECT_FALSE(bigMutex().heldByThisThread());
  EXPECT_FALSE(HandlerScope::running());
  EXPECT_THAT(user.texts(FakeUserInteraction::Kind::Error),
              ElementsAre("Table::onX failed. Exception : bad"));
}

TEST_F(HandlerScopeTest, UnforeseenExceptionIsReportedLikeOneOfTheProgramsOwn) {
  FakeUserInteraction user;
  EXPECT_EQ(1, guardedHandler(u"Table::onX failed.", [this] {
              HandlerScope::whenDone(&m_first, note("a"));
              throw std::out_of_range("no such row");
            }));
  EXPECT_EQ(1, guardedHandler(u"Table::onY failed.", [] { throw 5; }));
  EXPECT_FALSE(bigMutex().heldByThisThread());
  EXPECT_FALSE(HandlerScope::running());
  EXPECT_THAT(m_done, ElementsAre("a"));
  EXPECT_THAT(user.texts(FakeUserInteraction::Kind::Error),
              ElementsAre(StartsWith(u"Table::onX failed. Unforeseen failure : no such row.\n"),
                          StartsWith(u"Table::onY failed. Unforeseen failure : of an unknown kind.\n")));
}

TEST_F(HandlerScopeTest, UnforeseenExceptionOfLateWorkIsReportedAndTheRestRuns) {
  FakeUserInteraction user;
  guardedHandler(u"Table::onX failed.", [this] {
    HandlerScope::whenDone(&m_first, [] { throw std::bad_alloc(); });
    HandlerScope::whenDone(&m_second, note("b"));
  });
  EXPECT_THAT(
      user.texts(FakeUserInteraction::Kind::Error),
      ElementsAre(StartsWith(u"Table::onX failed. Unforeseen failure : there is not enough memory.\n")));
  EXPECT_THAT(m_done, ElementsAre("b"));
}

} // namespace
} // namespace Tallymoor
