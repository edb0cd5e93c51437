#pragma once
#include "session/RandomCommands.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {

/// A user without a network and without threads, so that the process can be forked. All prices are known.
class CountedJournalTest : public ::testing::Test {
public:
  ~CountedJournalTest() override;

protected:
  CountedJournalTest();

  String journal() const { return profile.dataFolder() + u"Journal"; }
  /// Takes the records and the journal away.
  void forgetEverything() const;

  TestProfile profile;
  FakeUserInteraction user;
  GatewayScope gateway;
};

} // namespace Tallymoor
