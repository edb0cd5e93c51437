#include "YearOfTransactionsTest.h"
#include <cstdio>
#include <ostream>

namespace Tallymoor {
namespace {

/// How people in a country write dates and amounts like 1,234.50 and 0.125.
struct Manner {
  const char* locale;
  std::string (*date)(int year, int month, int day);
  char group;
  char decimal;
  std::string (*money)(const std::string& digits); ///< From digits with groups and decimals.
  int moneyDecimals;
};

std::ostream& operator<<(std::ostream& stream, const Manner& manner) {
  return stream << manner.locale;
}

std::string two(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}
std::string one(int number) {
  return std::to_string(number);
}
std::string dayFirst(int year, int month, int day) {
  return two(day) + "/" + two(month) + "/" + one(year);
}
std::string dollars(const std::string& digits) {
  return "$" + digits;
}

const Manner MANNERS[] = {
    {"en_AU", dayFirst, ',', '.', dollars, 2},
    {"en_US", [](int year, int month, int day) { return one(month) + "/" + one(day) + "/" + one(year); }, ',',
     '.', dollars, 2},
    {"en_GB", dayFirst, ',', '.', [](const std::string& digits) { return "\u00A3" + digits; }, 2},
    {"de_DE", [](int year, int month, int day) { return one(day) + "." + one(month) + "." + one(year); }, '.',
     ',', [](const std::string& digits) { return digits + "\u00A0\u20AC"; }, 2},
    {"ja_JP", [](int year, int month, int day) { return one(year) + "/" + one(month) + "/" + one(day); }, ',',
     '.', [](const std::string& digits) { return "\uFFE5" + digits; }, 0},
};

/// Fills in every form in the notation of a country and checks the saved records. The form that edits the
/// entry is then confirmed unchanged, which must change nothing, and then with another amount.
class CountedLocales : public YearOfTransactionsTest, public testing::WithParamInterface<Manner> {
protected:
  CountedLocales() { profile().setLocale(GetParam().locale); }

  std::string day(int month, int day) const { return GetParam().date(2025, month, day); }
  /// A typed amount from its parts: "1", "234", "50" for 1,234.50.
  std::string amount(const std::string& thousands, const std::string& units,
                     const std::string& decimals) const {
    return (thousands.empty() ? "" : thousands + GetParam().group) + units + GetParam().decimal + decimals;
  }
  std::string amount(const std::string& units, const std::string& decimals) const {
    return amount("", units, decimals);
  }
  /// A typed amount of money. `rounded` is used if the currency has no cents.
  std::string money(const std::string& thousands, const std::string& units, const std::string& cents,
                    const std::string& rounded) const {
    const std::string whole = thousands + GetParam().group;
    return GetParam().money(GetParam().moneyDecimals ? whole + units + GetParam().decimal + cents
                                                     : whole + rounded);
  }

  std::string savedRecords() {
    command(TallymoorWindow::ID_SAVE);
    return TestProfile::readFile(recordsPath());
  }
  void expectRecorded(const std::string& what) {
    ++m_readBack;
    EXPECT_NE(std::string::npos, savedRecords().find(what)) << what << " is not in\n" << savedRecords();
  }
  void expectShown(InvestmentTreeItem& node, const std::string& text) {
    leftClick(node);
    ++m_shown;
    EXPECT_NO_THROW(rowWith(tableOf(node), text)) << text;
  }

  /// Opens the form of the row, checks the day and confirms it unchanged.
  void confirmUnchanged(InvestmentTreeItem& node, const std::string& rowText, const std::string& entry,
                        const std::string& form, const std::string& shownDay, const Open& boxes = {}) {
    const std::string before = savedRecords();
    fromRow(node, rowText, entry, [=, this] {
      whenModal(form, [=, this](FXWindow& dialog) {
        EXPECT_TRUE(hasField(dialog, shownDay)) << form << " does not show " << shownDay;
        if (boxes)
          boxes();
        press(dialog, "OK");
      });
    });
    ++m_confirmed;
    EXPECT_EQ(before, savedRecords()) << form;
  }
  static bool hasField(FXWindow& dialog, const std::string& text) {
    for (const FXTextField* field : findAll<FXTextField>(dialog))
      if (field->getText().text() == text)
        return true;
    return false;
  }

  void enterTransactions() {
    cash(byCommand(TallymoorWindow::ID_DEPOSIT_CASH), "Deposit cash", day(3, 3), amount("50", "000", "75"),
         "opening");
    expectRecorded("<Date>3/3/2025</Date><Constant>50000.75</Constant>");
    buy(byCommand(TallymoorWindow::ID_BUY), "ABC.AX", day(3, 5), amount("1", "000", "5"),
        amount("10", "1234"), amount("29", "95"));
    expectRecorded("<Date>5/3/2025</Date><Constant>1000.50</Constant><Constant>10.1234</"
                   "Constant><Constant>29.95</Constant>");
    dividend(byCommand(TallymoorWindow::ID_DIVIDENDS), "ABC.AX", day(5, 28), amount("1", "000", "5"),
             amount("0", "123456"), 0, fromAbroad("New Zealand", amount("9", "26")));
    expectRecorded("0.123456");
    expectRecorded("9.26");
    dividend(byCommand(TallymoorWindow::ID_DIVIDENDS), "ABC.AX", day(9, 22), amount("1", "000", "5"),
             amount("0", "05"), 100, asShares(amount("10", "25"), amount("9", "8805")));
    expectRecorded("<Constant>10.25</Constant><Constant>9.8805</Constant>");
    sell(byCommand(TallymoorWindow::ID_SELL), "ABC.AX", day(11, 10), amount("250", "5"),
         amount("11", "5678"));
    expectRecorded("<Constant>11.5678</Constant>");
    cash(byCommand(TallymoorWindow::ID_INTEREST), "Receive interest", day(12, 31), amount("1", "234", "56"),
         "December");
    expectRecorded("<Date>31/12/2025</Date><Constant>1234.56</Constant>");
    cash(byPopup(&CountedLocales::cashNode, "Withdraw cash..."), "Withdraw cash", day(12, 30),
         amount("2", "000", "5"), "tax");
    expectRecorded("<Date>30/12/2025</Date><Constant>2000.50</Constant>");
    cash(byPopup(&CountedLocales::cashNode, "Pay account fee..."), "Pay account fee", day(12, 29),
         amount("0", "5"), "broker");
    expectRecorded("<Date>29/12/2025</Date><Constant>0.50</Constant>");
  }
  void readTables() {
    expectShown(cashNode(), day(12, 31));
    expectShown(cashNode(), money("1", "234", "56", "235"));
    expectShown(cashNode(), money("50", "000", "75", "001"));
    expectShown(dividendsNode(), day(5, 28));
    expectShown(soldNode(), day(11, 10));
    expectShown(purchasesNode("ABC.AX"), day(3, 5));
  }
  void confirmForms() {
    confirmUnchanged(cashNode(), "INTEREST December", "Edit cash transaction from " + day(12, 31) + "...",
                     "Edit cash transaction", day(12, 31));
    confirmUnchanged(purchasesNode("ABC.AX"), day(3, 5), "Edit purchase from " + day(3, 5) + "...",
                     "Edit share purchase for ABC.AX on " + day(3, 5), day(3, 5),
                     [this] { answer("Would you like to make this the default brokerage rate?", "No"); });
    confirmUnchanged(
        soldNode(), day(11, 10), "Edit sale of ABC.AX from " + day(11, 10) + "...",
        "Edit share sold on " + day(11, 10), day(11, 10), [this] {
          answer("Are you sure there was no buy brokerage charged\nfor this purchase?", "Yes");
          // The sale took part of a parcel, so there is no separate cash entry for its purchase.
          answer("Please find and edit the corresponding cash deposit and withdrawal for this transaction.",
                 "OK");
        });
    confirmUnchanged(dividendsNode(), day(5, 28), "Edit dividend for ABC.AX on " + day(5, 28) + "...",
                     "Edit dividend of ABC.AX on " + day(5, 28), day(5, 28));
  }
  void changeAnAmount() {
    editCash("INTEREST December", day(12, 31), {{"Amount", amount("4", "321", "65")}, {"Date", day(11, 30)}});
    expectRecorded("<Date>30/11/2025</Date><Constant>4321.65</Constant>");
  }
  void print() const {
    std::printf("COUNT: forms in the locale %s: %d entries read back from the records, %d forms confirmed "
                "unchanged, %d cells "
                "shown in its form, %s\n",
                GetParam().locale, m_readBack, m_confirmed, m_shown,
                HasFailure() ? "SOME OTHERWISE" : "0 otherwise");
  }

private:
  int m_readBack = 0;
  int m_confirmed = 0;
  int m_shown = 0;
};

TEST_P(CountedLocales, WhatIsTypedIsRecordedAndShown) {
  enterTransactions();
  readTables();
  confirmForms();
  changeAnAmount();
  print();
}

INSTANTIATE_TEST_SUITE_P(InFiveCountries, CountedLocales, testing::ValuesIn(MANNERS),
                         [](const auto& info) { return std::string(info.param.locale); });

} // namespace
} // namespace Tallymoor
