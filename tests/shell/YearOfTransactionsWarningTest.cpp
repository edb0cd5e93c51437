#include "YearOfTransactionsTest.h"
#include <utility>

namespace Tallymoor {
namespace {

/// Records the warnings of the window.
class NotingWindow : public TallymoorWindow {
public:
  using TallymoorWindow::TallymoorWindow;
  void warnOnce(const String& text, const String& caption, const String& key, int level) override {
    warnings.push_back({text.toUTF8(), caption.toUTF8(), key.toUTF8(), std::to_string(level)});
  }
  std::vector<std::vector<std::string>> warnings;
};

class OverdrawnTest : public YearOfTransactionsTest {
protected:
  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override {
    m_icons.emplace(app);
    awaitWizard();
    return std::make_unique<NotingWindow>(app, *m_icons);
  }
  std::vector<std::vector<std::string>> takeWarnings() {
    return std::exchange(dynamic_cast<NotingWindow&>(run()).warnings, {});
  }
  void deposit(const std::string& date, const std::string& amount) {
    cash(byButton("Deposit Cash"), "Deposit cash", date, amount, "");
  }
  void withdraw(const std::string& date, const std::string& amount) {
    cash(byButton("Withdraw Cash"), "Withdraw cash", date, amount, "");
  }
  const std::vector<std::string> warning = {
      "Warning: The cash reserve for Trading is currently negative. You need to reconcile the cash reserve "
      "with the actual trading account.",
      "Cash Reserve Warning", "TradingCRW", "1"};

private:
  std::optional<WindowIcons> m_icons;
};

/// The window shows a warning once per key and run, so all must have the same key.
TEST_F(OverdrawnTest, NegativeReserveOfTodayIsWarnedOfUnderOneKey) {
  deposit("02/03/2026", "100");
  EXPECT_TRUE(takeWarnings().empty());
  withdraw("03/03/2026", "100.01");
  EXPECT_EQ("-$0.01", figure(tradingNode(), "Capital in cash"));
  EXPECT_THAT(takeWarnings(), testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(warning)));
  run().refreshViews(true);
  EXPECT_THAT(takeWarnings(), testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(warning)));
  deposit("03/03/2026", "0.01");
  EXPECT_TRUE(takeWarnings().empty());
}

TEST_F(OverdrawnTest, NegativeReserveOfThePastIsNotWarnedOf) {
  deposit("03/03/2026", "100");
  withdraw("27/02/2026", "50");
  EXPECT_EQ((Rows{{"27/02/2026", "-$50.00"}, {"03/03/2026", "$50.00"}}), shown(cashNode(), {"", "Balance"}));
  EXPECT_EQ("$50.00", figure(tradingNode(), "Capital in cash"));
  EXPECT_TRUE(takeWarnings().empty());
}

/// The first refresh of the next run finds the same reserve.
TEST_F(OverdrawnTest, NextRunWarnsAgain) {
  withdraw("03/03/2026", "5");
  startAgain();
  EXPECT_THAT(takeWarnings(), testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(warning)));
}

} // namespace
} // namespace Tallymoor
