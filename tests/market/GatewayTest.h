#pragma once
#include "foundation/Exception.h"
#include "market/TallymoorInternet.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <functional>
#include <gtest/gtest.h>
#include <typeinfo>

namespace Tallymoor {

/// A user who does something in the world before he answers, and notices what is shown while he is asked.
class BusyUser : public FakeUserInteraction {
public:
  bool question(const String& text) override {
    if (openWaits() != 0)
      ADD_FAILURE() << "the wait cursor is on during a question";
    if (beforeAnswer)
      beforeAnswer();
    return FakeUserInteraction::question(text);
  }
  std::function<void()> beforeAnswer;
};

/// A gateway over a made-up exchange, on Wednesday 15 November 2006. The updater runs only where a test
/// starts it.
class GatewayTest : public ::testing::Test {
protected:
  using Page = MarketFixture::Page;
  using Kind = FakeUserInteraction::Kind;

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  static PriceUpdater& updater() { return gateway().priceUpdater(); }

  std::vector<String> questions() const { return m_user.texts(Kind::Question); }
  std::vector<String> statuses() const { return m_user.texts(Kind::Status); }

  /// The message of the failure, which must be of exactly this class.
  template <class Failure, class Work>
  static String failureOf(Work work) {
    try {
      work();
    } catch (const Failure& failure) {
      EXPECT_EQ(typeid(failure), typeid(Failure));
      return failure.message();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
  }

  static String local(const Date& date) { return date.toString(DATE_DISPLAY_LOCAL); }

  const String m_code = u"ABC.AX";
  const Date m_today{2006, 11, 15};
  const Date m_friday{2006, 11, 10};

  TestProfile m_profile{"en_AU", m_today};
  BusyUser m_user;
  MarketFixture m_market;
  GatewayScope m_scope;
};

inline const String OFFLINE_QUESTION = u"If you are having problems with Internet access\n"
                                       u"you should place Tallymoor into offline mode to speed operation.\n"
                                       u"Put Tallymoor into offline mode now?";

} // namespace Tallymoor
