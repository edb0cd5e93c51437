#include "market/SourceAnswer.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

AnswerFormat dateAndClose(AnswerReader reader, const char16_t* date, const char16_t* close) {
  AnswerFormat format;
  format.reader = reader;
  format.columns = {{AnswerColumn::Date, date}, {AnswerColumn::Close, close}};
  return format;
}

TEST(SourceAnswer, ReadsATableByItsHeadings) {
  AnswerFormat format = dateAndClose(AnswerReader::Headings, u"Datum", u"Schluss");
  format.datePattern = u"dd.MM.yyyy";
  format.decimalSign = u',';
  const AnsweredHistory history = readHistory(
      "<html><table><tr><td>Datum</td><td>Schluss</td></tr><tr><td>03.12.2020</td><td>1.665,89</td></tr>"
      "<tr><td colspan=2>Dividende 0,70</td></tr></table></html>",
      format);
  ASSERT_EQ(history.prices.size(), 1u);
  EXPECT_EQ(history.prices.at(Date(2020, 12, 3)).close, 1665.89);
  EXPECT_EQ(history.passedOver, 1u);
}

TEST(SourceAnswer, RefusesRowsOfWhichNoneHasAPrice) {
  const AnswerFormat json = dateAndClose(AnswerReader::Json, u"$[*].date", u"$[*].close");
  EXPECT_EQ(messageOf([&] { readHistory(R"json([{"date":"2026-02-26","last":10.5}])json", json); }),
            u"none of the rows has a day and a price");
  EXPECT_EQ(messageOf([&] { readHistory("[]", json); }), u"(nothing thrown)");
  const AnswerFormat csv = dateAndClose(AnswerReader::Csv, u"Date", u"Close");
  EXPECT_EQ(messageOf([&] { readHistory("Date,Close\n2026-02-26,N/A\n", csv); }),
            u"none of the rows has a day and a price");
}

TEST(SourceAnswer, KeepsRowsOfDaysToComeApart) {
  const AnswerFormat csv = dateAndClose(AnswerReader::Csv, u"Date", u"Close");
  const AnsweredHistory history = readHistory("Date,Close\n2026-02-26,10.5\n9026-02-27,10.6\n", csv);
  EXPECT_EQ(history.prices.size(), 1u);
  ASSERT_EQ(history.future.size(), 1u);
  EXPECT_EQ(history.future.at(Date(9026, 2, 27)).close, 10.6);
}

} // namespace
} // namespace Tallymoor
