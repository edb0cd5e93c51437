#include "market/ToldDividends.h"
#include "foundation/Exception.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using ByCode = std::map<String, ToldDividends::OfCode>;

class ToldDividendsTest : public testing::Test {
protected:
  String file() const { return m_profile.dataFolder() + TOLD_DIVIDENDS_FILE; }

  TestProfile m_profile;
  const Date m_day{2026, 2, 16};
  const ByCode m_told{{u"ABC.AX", {{m_day, 0.25}, {Date(2025, 8, 18), 0.123456}}}};
};

TEST_F(ToldDividendsTest, WaitAcrossRuns) {
  ToldDividends(file()).add(m_told);
  EXPECT_EQ(ToldDividends(file()).waiting(), m_told);
}

TEST_F(ToldDividendsTest, ASettledOneNeverWaitsAgain) {
  {
    ToldDividends dividends(file());
    dividends.add(m_told);
    dividends.settle(u"ABC.AX", m_day);
    dividends.settle(u"XYZ.AX", m_day); // told of none
  }
  ToldDividends later(file());
  later.add(m_told);
  later.add({{u"ABC.AX", {{m_day, 0.26}}}});
  EXPECT_EQ(later.waiting(), (ByCode{{u"ABC.AX", {{Date(2025, 8, 18), 0.123456}}}}));
}

TEST_F(ToldDividendsTest, AFileThatCantBeReadIsKeptAside) {
  TestProfile::writeFile(file(), "<ToldDividends><Told");
  ToldDividends dividends(file());
  EXPECT_TRUE(dividends.waiting().empty());
  dividends.add(m_told);
  EXPECT_EQ(TestProfile::readFile(file() + u".bak"), "<ToldDividends><Told");
  EXPECT_EQ(ToldDividends(file()).waiting(), m_told);
}

TEST_F(ToldDividendsTest, WhatCantBeWrittenCountsForTheRun) {
  ToldDividends dividends(m_profile.dataFolder() + u"missing/told.xml");
  EXPECT_NO_THROW(dividends.add(m_told));
  EXPECT_EQ(dividends.waiting(), m_told);
  EXPECT_THROW(dividends.settle(u"ABC.AX", m_day), Exception);
  EXPECT_EQ(dividends.waiting().at(u"ABC.AX").size(), 1u);
}

} // namespace
} // namespace Tallymoor
