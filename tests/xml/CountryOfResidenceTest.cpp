#include "xml/CountryOfResidence.h"
#include "XmlTestTools.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "support/FakeUserInteraction.h"
#include "support/TestProfile.h"

namespace Tallymoor {
namespace {

using Kind = FakeUserInteraction::Kind;

const char* const OPTIONS =
    "<CountryOptions version='1'><CountryOption Name='Australia' FinYearStart='1/7/2000'/>"
    "<CountryOption Name='New Zealand' FinYearStart='1/4/2000'/></CountryOptions>";

class CountryOfResidenceTest : public ::testing::Test {
protected:
  CountryOfResidenceTest() {
    CountryOfResidence::destroyInstance();
    writeOptions(OPTIONS);
  }
  ~CountryOfResidenceTest() override { CountryOfResidence::destroyInstance(); }

  void writeOptions(const std::string& text) {
    TestProfile::writeFile(m_profile.configFolder() + u"CountryConfig.xml", text);
  }
  static void store(const char16_t* country) {
    Settings::Instance().writeString(u"Config", u"Country", country);
  }
  static String stored(const char16_t* key) { return Settings::Instance().readString(u"Config", key); }
  static void expectStart(int day, int month) {
    const Date start = CountryOfResidence::Instance().financialYearStart();
    EXPECT_EQ(start.day(), day);
    EXPECT_EQ(start.month(), month);
  }

  TestProfile m_profile;
  FakeUserInteraction m_user;
};

TEST_F(CountryOfResidenceTest, AStoredCountryIsLoadedWithoutAQuestion) {
  store(u"Australia");
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"Australia"));
  EXPECT_TRUE(CountryOfResidence::Instance().isAustralia());
  expectStart(1, 7);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(CountryOfResidenceTest, OnlyTheExactNameIsAustralia) {
  store(u"australia");
  EXPECT_FALSE(CountryOfResidence::Instance().isAustralia());
}

TEST_F(CountryOfResidenceTest, TheFirstRunAsksFromTheListInFileOrder) {
  m_user.answerChoice(1);
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"New Zealand"));
  expectStart(1, 4);
  EXPECT_EQ(stored(u"Country"), String(u"New Zealand"));
  const auto calls = m_user.calls();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].kind, Kind::ChooseFromList);
  EXPECT_EQ(calls[0].title, String(u"Country of Residence"));
  EXPECT_EQ(calls[0].text, String(u"What is your country of residence for tax purposes?"));
  EXPECT_EQ(calls[0].entries, (std::vector<String>{u"Australia", u"New Zealand", u"OTHER"}));
}

TEST_F(CountryOfResidenceTest, OtherAsksForTheStartAndIsTheUnitedStates) {
  m_user.answerChoice(2);
  m_user.answerDate(Date(2026, 10, 5));
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"United States"));
  expectStart(5, 10);
  EXPECT_EQ(stored(u"Country"), String(u"United States"));
  EXPECT_EQ(stored(u"FinYearStart"), String(u"5/10/2026"));
  const auto calls = m_user.calls();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[1].kind, Kind::AskDate);
  EXPECT_EQ(calls[1].initialDate, Date(2026, 1, 1)); // The user's current year, as far as known.
  EXPECT_EQ(calls[1].text, String(u"Choose the start of your financial\nyear for tax purposes."));
  EXPECT_EQ(calls[2].kind, Kind::Information);
  EXPECT_EQ(calls[2].text,
            String(u"Your country of residence for tax purposes has been set to United States.\n"
                   u"If your country is unsupported, it may become an option at a later date,\n"
                   u"and you can change it from the Tools menu."));
  // After a restart, no option has that name, so the date given by the user applies.
  CountryOfResidence::destroyInstance();
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"United States"));
  expectStart(5, 10);
}

TEST_F(CountryOfResidenceTest, TheStartThatTheUserGaveComesBeforeTheOptionOfThatName) {
  writeOptions("<CountryOptions version='1'><CountryOption Name='Australia' FinYearStart='1/7/2000'/>"
               "<CountryOption Name='United States' FinYearStart='1/1/2000'/></CountryOptions>");
  m_user.answerChoice(2);
  m_user.answerDate(Date(2026, 10, 5));
  CountryOfResidence::Instance();
  expectStart(5, 10);
  CountryOfResidence::destroyInstance(); // A restart.
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"United States"));
  expectStart(5, 10);
  CountryOfResidence::Instance().reload();
  expectStart(5, 10);
}

TEST_F(CountryOfResidenceTest, AStartThatCannotBeReadLeavesTheOptions) {
  store(u"Australia");
  Settings::Instance().writeString(u"Config", u"FinYearStart", u"soon");
  expectStart(1, 7);
}

TEST_F(CountryOfResidenceTest, WithoutAnyStartTheYearBeginsInJanuary) {
  store(u"Atlantis");
  expectStart(1, 1);
  writeOptions(
      "<CountryOptions version='1'><CountryOption Name='Atlantis' FinYearStart='soon'/></CountryOptions>");
  CountryOfResidence::Instance().reload();
  expectStart(1, 1);
}

TEST_F(CountryOfResidenceTest, ADocumentThatFailsLeavesOtherAlone) {
  for (const char* text :
       {"<CountryOptions version='1'><CountryOption Name='A' FinYearStart='1/1/2000'/><Country", "",
        "<CountryOptions><CountryOption Name='A' FinYearStart='1/1/2000'/></CountryOptions>"}) {
    writeOptions(text);
    CountryOfResidence::destroyInstance();
    m_user.clearCalls();
    m_user.answerChoice(std::nullopt);
    EXPECT_EQ(CountryOfResidence::Instance().country(), String());
    ASSERT_EQ(m_user.calls().size(), 1u);
    EXPECT_EQ(m_user.calls()[0].entries, (std::vector<String>{u"OTHER"}));
  }
}

TEST_F(CountryOfResidenceTest, CancellingTheFirstChoiceIsNotAskedAgainInTheRun) {
  m_user.answerChoice(std::nullopt);
  EXPECT_EQ(CountryOfResidence::Instance().country(), String());
  EXPECT_EQ(CountryOfResidence::Instance().country(), String());
  EXPECT_EQ(stored(u"Country"), String());
  expectStart(1, 1);
}

TEST_F(CountryOfResidenceTest, ChangingAsksAgainAndStores) {
  store(u"Australia");
  m_user.answerChoice(1);
  CountryOfResidence::Instance().change();
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"New Zealand"));
  EXPECT_FALSE(CountryOfResidence::Instance().isAustralia());
  expectStart(1, 4);
  EXPECT_EQ(stored(u"Country"), String(u"New Zealand"));
}

TEST_F(CountryOfResidenceTest, AListedCountryForgetsTheStartOnceGiven) {
  m_user.answerChoice(2);
  m_user.answerDate(Date(2026, 10, 5));
  CountryOfResidence::Instance();
  m_user.answerChoice(0);
  CountryOfResidence::Instance().change();
  EXPECT_EQ(stored(u"FinYearStart"), String());
  expectStart(1, 7);
}

TEST_F(CountryOfResidenceTest, CancellingChangesNothing) {
  store(u"Australia");
  m_user.answerChoice(std::nullopt);
  CountryOfResidence::Instance().change();
  m_user.answerChoice(2);
  m_user.answerDate(std::nullopt);
  CountryOfResidence::Instance().change();
  EXPECT_EQ(CountryOfResidence::Instance().country(), String(u"Australia"));
  expectStart(1, 7);
  EXPECT_EQ(stored(u"Country"), String(u"Australia"));
  EXPECT_EQ(stored(u"FinYearStart"), String());
  EXPECT_TRUE(m_user.calls(Kind::Information).empty());
}

TEST_F(CountryOfResidenceTest, ABackgroundPassNeverAsks) {
  {
    BackgroundPassScope pass;
    EXPECT_EQ(CountryOfResidence::Instance().country(), String());
    CountryOfResidence::Instance().reload();
  }
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(CountryOfResidenceTest, AReloadTakesADeliveredDocumentWithoutAsking) {
  store(u"Australia");
  CountryOfResidence::Instance();
  writeOptions("<CountryOptions version='2'><CountryOption Name='Australia' FinYearStart='1/8/2000'/>"
               "</CountryOptions>");
  CountryOfResidence::Instance().reload();
  expectStart(1, 8);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(CountryOfResidenceTest, AYearThatBeginsOnALeapDayBeginsOnTheFirstOfMarchInOtherYears) {
  m_user.answerChoice(2);
  m_user.answerDate(Date(2024, 2, 29));
  const CountryOfResidence& country = CountryOfResidence::Instance();
  expectStart(29, 2);
  EXPECT_EQ(country.financialYearOf(Date(2024, 2, 29)), Date(2024, 2, 29));
  EXPECT_EQ(country.financialYearOf(Date(2026, 3, 1)), Date(2026, 3, 1));
  EXPECT_EQ(country.financialYearOf(Date(2026, 2, 28)), Date(2025, 3, 1));
}

TEST_F(CountryOfResidenceTest, TheFinancialYearOfADay) {
  store(u"Australia");
  const CountryOfResidence& country = CountryOfResidence::Instance();
  EXPECT_EQ(country.financialYearOf(Date(2026, 3, 3)), Date(2025, 7, 1));
  EXPECT_EQ(country.financialYearOf(Date(2026, 6, 30)), Date(2025, 7, 1));
  EXPECT_EQ(country.financialYearOf(Date(2026, 7, 1)), Date(2026, 7, 1));
  EXPECT_EQ(country.financialYearOf(Date(2026, 12, 31)), Date(2026, 7, 1));
}

} // namespace
} // namespace Tallymoor
