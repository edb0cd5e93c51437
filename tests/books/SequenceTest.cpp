// Runs the cases of data/sequences. The expected results come from expected_sequences.py, an independent
// implementation.
#include "TestPaths.h"
#include "analysis/SaleFigures.h"
#include "books/BooksTest.h"
#include "books/SequenceArguments.h"
#include "books/SequenceFile.h"
#include "foundation/Amounts.h"
#include <map>
#include <set>
#include <variant>

namespace Tallymoor {
namespace {

/// Nothing, a text, or a number compared to the last digits of a double.
using Answer = std::variant<std::monostate, std::string, double>;

constexpr double TOLERANCE = 2e-6; ///< Numbers in the files have six decimals.

Answer truth(bool value) {
  return std::string(value ? "true" : "false");
}

using Arguments = SequenceArguments;

class SequenceTest : public BooksTest, public testing::WithParamInterface<Sequence> {
protected:
  using Operation = Answer (SequenceTest::*)(Arguments&);

  static const std::map<std::string, Operation>& operations();

  Answer run(const SequenceStep& step) {
    const auto operation = operations().find(step.words[0]);
    if (operation == operations().end())
      throw std::runtime_error("no operation " + step.words[0]);
    Arguments arguments(step.words);
    try {
      return (this->*operation->second)(arguments);
    } catch (const Exception& failure) {
      return std::string("throws ").append(failure.message().toUTF8());
    }
  }

  void check(const SequenceStep& step) {
    const Answer answer = run(step);
    if (const double* figure = std::get_if<double>(&answer)) {
      ASSERT_TRUE(step.expected && !step.expected->starts_with("throws"));
      EXPECT_NEAR(*figure, String::fromUTF8(*step.expected).toDouble(), TOLERANCE);
    } else if (const std::string* text = std::get_if<std::string>(&answer)) {
      EXPECT_EQ(*text, step.expected.value_or(""));
    } else {
      EXPECT_FALSE(step.expected) << "nothing came of it";
    }
  }

  /// The document with each record on its own line, as in the files.
  std::string document() {
    std::string text = encodedPortfolio().toUTF8();
    for (const char* tag : {"<HeldShares", "<HeldShare>", "<BuyEvent>", "<SoldShares", "<SoldShare>",
                            "<SellEvent", "<Dividends", "<DividendEvent>", "<CashReserve", "<CashEvent>"})
      for (std::size_t at = text.find(tag); at != std::string::npos; at = text.find(tag, at + 2))
        text.insert(at, 1, '\n');
    return text + "\n";
  }

  XMLHeldShare& stockHeld(const String& code) {
    auto* stock = user().findHeldShare(code);
    if (!stock)
      throw std::runtime_error("not held: " + code.toUTF8());
    return *stock;
  }
  XMLDividendEvent& dividend(std::size_t place) { return m_portfolio.dividends()[place]; }
  XMLCashEvent& cashEvent(std::size_t place) { return m_portfolio.cashEvents()[place]; }

  // ---- Answers of the user and the market ----

  Answer price(Arguments& a) {
    const bool range = a.count() == 4;
    const String code = a.text();
    const Date first = a.date();
    const Date last = range ? a.date() : first;
    setPrices(code, first, last, a.number());
    return {};
  }
  Answer index(Arguments& a) {
    user().setComparisonIndex(a.text());
    return {};
  }
  Answer answer(Arguments& a) {
    m_interaction.answerQuestion(a.text() == u"yes");
    return {};
  }
  Answer answerSplit(Arguments& a) {
    m_interaction.answerRatio(a.ratio());
    return {};
  }

  // ---- Shares ---- Arguments are read into variables first, because the order of evaluation in a call is
  // unspecified.

  Answer buy(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    const String comment = a.text();
    // As the form does before it closes.
    if (user().isOfAnotherMarket(code) && !m_interaction.question(u"another market"))
      return truth(false);
    user().buyShares(code, {day, number, price, brokerage, comment});
    return truth(true);
  }
  Answer addParcel(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    user().addBuyEvent(code, {day, number, price, brokerage, a.text()});
    return {};
  }
  Answer sell(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    const bool firstInFirstOut = a.text() == u"fifo";
    user().sellShares(code, {day, number, price, brokerage, a.text()}, firstInFirstOut);
    return {};
  }
  Answer removeHeld(Arguments& a) {
    user().removeHeldShare(a.text());
    return {};
  }
  Answer removeSold(Arguments& a) {
    user().removeSoldShare(a.text());
    return {};
  }
  Answer deleteBuy(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    return truth(user().deleteBuyEvent(code, day, a.number()));
  }
  Answer deleteSell(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    return truth(user().deleteSellEvent(code, day, a.number()));
  }
  Answer undoSell(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number();
    if (const auto* stock = user().findSoldShare(code))
      for (std::size_t i = 0; i < stock->sales().size(); ++i)
        if (const SaleFigures figures(stock->sales()[i]);
            figures.sold() == day && showsTheSame(figures.number(), number, 4))
          return truth(user().undoSale(stock->sales()[i]));
    return truth(false);
  }
  Answer editBuy(Arguments& a) {
    const String code = a.text();
    auto& event = parcel(code, static_cast<std::size_t>(a.whole()));
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    const String comment = a.text();
    const double oldCost = a.number();
    return truth(user().editBuyEvent(event, {day, number, price, brokerage, comment}, oldCost, a.date()));
  }
  Answer editSell(Arguments& a) {
    const String code = a.text();
    auto& event = sale(code, static_cast<std::size_t>(a.whole()));
    const Date bought = a.date(), sold = a.date();
    const double number = a.number(), buyPrice = a.number(), sellPrice = a.number();
    const double buyBrokerage = a.number(), sellBrokerage = a.number();
    return truth(user().editSellEvent(
        event, {bought, sold, number, buyPrice, sellPrice, buyBrokerage, sellBrokerage, a.text()}));
  }
  Answer minMax(Arguments& a) {
    XMLHeldShare& stock = stockHeld(a.text());
    const double min = a.number();
    user().setMinMax(stock, min, a.number());
    return {};
  }
  Answer portfolioMax(Arguments& a) {
    XMLHeldShare& stock = stockHeld(a.text());
    user().setPortfolioMax(stock, a.number());
    return {};
  }

  // ---- Cash and dividends ----

  Answer credit(Arguments& a) {
    const Date day = a.date();
    const double value = a.number();
    const std::int32_t type = a.whole();
    user().creditCash(day, value, type, a.text());
    return {};
  }
  Answer debit(Arguments& a) {
    const Date day = a.date();
    const double value = a.number();
    const std::int32_t type = a.whole();
    user().debitCash(day, value, type, a.text());
    return {};
  }
  Answer editCash(Arguments& a) {
    XMLCashEvent& event = cashEvent(static_cast<std::size_t>(a.whole()));
    const Date newDate = a.date(), oldDate = a.date();
    const double value = a.number();
    user().editCashEvent(event, newDate, oldDate, value, a.text());
    return {};
  }
  Answer deleteCash(Arguments& a) {
    user().deleteCashEvent(cashEvent(static_cast<std::size_t>(a.whole())));
    return {};
  }
  Answer receive(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), rate = a.number();
    const std::int32_t franked = a.whole();
    const double shares = a.number(), price = a.number();
    const String country = a.text();
    user().receiveDividend({code, day, number, rate, franked, shares, price, country, a.number()});
    return {};
  }
  Answer editDividend(Arguments& a) {
    XMLDividendEvent& event = dividend(static_cast<std::size_t>(a.whole()));
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), rate = a.number();
    const std::int32_t franked = a.whole();
    const double shares = a.number(), price = a.number();
    const String country = a.text();
    const double tax = a.number(), oldShares = a.number(), oldPrice = a.number(), oldValue = a.number();
    return truth(user().editDividend(event, {code, day, number, rate, franked, shares, price, country, tax},
                                     oldShares, oldPrice, oldValue, a.date()));
  }
  Answer deleteDividend(Arguments& a) {
    return truth(user().deleteDividend(dividend(static_cast<std::size_t>(a.whole()))));
  }

  // ---- Splits ----

  Answer recordSplit(Arguments& a, bool reverse) {
    const String code = a.text();
    const Date day = a.date();
    user().recordAdjustment(code, day, a.whole(), reverse);
    record().recordsChangedFrom(day);
    return {};
  }
  Answer split(Arguments& a) { return recordSplit(a, false); }
  Answer merge(Arguments& a) { return recordSplit(a, true); }

  // ---- Questions ----

  Answer update(Arguments&) {
    updateCapitalRecord(user());
    return {};
  }
  Answer held(Arguments& a) { return user().numHeld(a.text()); }
  Answer start(Arguments&) { return user().portfolioStartDate().toString(DATE_DISPLAY_DMY).toUTF8(); }
  Answer recordedPrice(Arguments& a) {
    const String code = a.text();
    return user().nearestRecordedPrice(code, a.date());
  }
  Answer sharePrice(Arguments& a) {
    const String code = a.text();
    return user().sharePriceFor(code, a.date(), false);
  }
  Answer isAdjusted(Arguments& a) {
    const String code = a.text();
    return truth(user().isAdjusted(code, a.date()));
  }
  Answer firstDay(Arguments&) {
    const Date first = record().firstRecordDate();
    return record().hasDayCap(first) ? first.toString(DATE_DISPLAY_DMY).toUTF8() : "none";
  }
  Answer lastDay(Arguments&) {
    for (Date day = m_today; day >= record().firstRecordDate(); day.addDays(-1))
      if (record().hasDayCap(day))
        return day.toString(DATE_DISPLAY_DMY).toUTF8();
    return std::string("none");
  }
  /// Without the date, which is part of the question.
  Answer day(Arguments& a) {
    const std::string text = dayOf(a.date()).toUTF8();
    return text.substr(text.find(' ') + 1);
  }
  Answer cashOn(Arguments& a) { return record().cashOn(a.date()); }
  Answer cashToday(Arguments&) { return user().cashReserveToday(); }
  Answer sharesToday(Arguments&) { return user().sharesValueToday(); }
  Answer capital(Arguments& a) { return record().capitalOn(a.date()); }
  Answer capitalToday(Arguments&) { return user().capitalToday(); }
  Answer flow(Arguments& a) {
    const Date from = a.date();
    return record().externalFlowBetween(from, a.date());
  }
  Answer dailyGain(Arguments&) { return user().dailyGain(); }
  Answer weeklyGain(Arguments&) { return user().weeklyGain(); }
};

const std::map<std::string, SequenceTest::Operation>& SequenceTest::operations() {
  static const std::map<std::string, Operation> known{
      {"price", &SequenceTest::price},
      {"index", &SequenceTest::index},
      {"answer", &SequenceTest::answer},
      {"answer-split", &SequenceTest::answerSplit},
      {"buy", &SequenceTest::buy},
      {"add-parcel", &SequenceTest::addParcel},
      {"sell", &SequenceTest::sell},
      {"remove-held", &SequenceTest::removeHeld},
      {"remove-sold", &SequenceTest::removeSold},
      {"delete-buy", &SequenceTest::deleteBuy},
      {"delete-sell", &SequenceTest::deleteSell},
      {"undo-sell", &SequenceTest::undoSell},
      {"edit-buy", &SequenceTest::editBuy},
      {"edit-sell", &SequenceTest::editSell},
      {"min-max", &SequenceTest::minMax},
      {"portfolio-max", &SequenceTest::portfolioMax},
      {"credit", &SequenceTest::credit},
      {"debit", &SequenceTest::debit},
      {"edit-cash", &SequenceTest::editCash},
      {"delete-cash", &SequenceTest::deleteCash},
      {"dividend", &SequenceTest::receive},
      {"edit-dividend", &SequenceTest::editDividend},
      {"delete-dividend", &SequenceTest::deleteDividend},
      {"split", &SequenceTest::split},
      {"merge", &SequenceTest::merge},
      {"update", &SequenceTest::update},
      {"held", &SequenceTest::held},
      {"start", &SequenceTest::start},
      {"recorded-price", &SequenceTest::recordedPrice},
      {"share-price", &SequenceTest::sharePrice},
      {"is-adjusted", &SequenceTest::isAdjusted},
      {"first-day", &SequenceTest::firstDay},
      {"last-day", &SequenceTest::lastDay},
      {"day", &SequenceTest::day},
      {"cash-on", &SequenceTest::cashOn},
      {"cash-today", &SequenceTest::cashToday},
      {"shares-today", &SequenceTest::sharesToday},
      {"capital", &SequenceTest::capital},
      {"capital-today", &SequenceTest::capitalToday},
      {"flow", &SequenceTest::flow},
      {"daily-gain", &SequenceTest::dailyGain},
      {"weekly-gain", &SequenceTest::weeklyGain},
  };
  return known;
}

TEST_P(SequenceTest, GivesTheExpectedResults) {
  for (const SequenceStep& step : GetParam().steps) {
    SCOPED_TRACE("line " + std::to_string(step.line) + ": " + step.text);
    if (step.words[0] == "document")
      EXPECT_EQ(document(), step.document);
    else
      check(step);
  }
}

const std::vector<Sequence>& sequences() {
  static const std::vector<Sequence> all = readSequences(TALLYMOOR_TEST_DATA "/sequences");
  return all;
}

INSTANTIATE_TEST_SUITE_P(Table, SequenceTest, testing::ValuesIn(sequences()),
                         [](const testing::TestParamInfo<Sequence>& info) { return info.param.name; });

/// A case without a query can't fail, and a duplicate name would hide a case.
TEST(SequenceFileTest, EachCaseHasAQueryAndAUniqueName) {
  std::set<std::string> names;
  for (const Sequence& sequence : sequences()) {
    EXPECT_TRUE(names.insert(sequence.name).second) << sequence.name;
    const auto asks = [](const SequenceStep& step) { return step.expected || !step.document.empty(); };
    EXPECT_TRUE(std::any_of(sequence.steps.begin(), sequence.steps.end(), asks)) << sequence.name;
  }
  EXPECT_GE(names.size(), 120u);
}

} // namespace
} // namespace Tallymoor
