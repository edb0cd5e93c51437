#include "pages/FormatProposal.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

String summaryOf(const FormatProposal& proposal) {
  String text = String(1, static_cast<char16_t>(proposal.format.separator)) + u" " +
                proposal.format.datePattern + u" " + String(1, proposal.format.decimalSign);
  for (const ColumnPlace& column : proposal.format.columns)
    text += u" " + column.place;
  for (const FormatDoubt& doubt : proposal.doubts)
    text += u"; doubt " + doubt.example + u": " + doubt.choices[0] + u" or " + doubt.choices[1];
  return text;
}

String proposed(const char* csv) {
  return summaryOf(proposeCsvFormat(csv));
}

TEST(CsvProposal, TakesWhatFitsInOneWay) {
  EXPECT_EQ(proposed("Date,Open,High,Low,Close,Adj Close,Volume\n2026-02-26,9.9,10.2,9.8,10.1,5.05,900\n"),
            u", yyyy-MM-dd . Date Close Open High Low Volume Adj Close");
  EXPECT_EQ(proposed("Datum;Er\xC3\xB6"
                     "ffnung;Hoch;Tief;Schlusskurs;Volumen\n31.01.2026;1.234,50;1.240,00;1.230,10;"
                     "1.239,00;12\n"),
            u"; dd.MM.yyyy , Datum Schlusskurs Er\u00F6ffnung Hoch Tief Volumen");
  EXPECT_EQ(proposed("Date,Close/Last,Volume\n02/26/2026,$x\n02/26/2026,10.5,7\n"),
            u", MM/dd/yyyy . Date Close/Last Volume");
  EXPECT_EQ(proposed("timestamp\tclose\n2026-02-26\t10\n"), u"\t yyyy-MM-dd . timestamp close");
}

TEST(CsvProposal, AsksAboutAnOrderOfDaysThatStaysOpen) {
  EXPECT_EQ(proposed("Date,Close\n02/03/2026,10.5\n05/03/2026,10.6\n"),
            u", dd/MM/yyyy . Date Close; doubt 02/03/2026: dd/MM/yyyy or MM/dd/yyyy");
  EXPECT_EQ(proposed("Date,Close\n02/03/2026,10.5\n13/03/2026,10.6\n"), u", dd/MM/yyyy . Date Close");
  // The same day either way leaves nothing open.
  EXPECT_EQ(proposed("Date,Close\n03/03/2026,10.5\n"), u", dd/MM/yyyy . Date Close");
}

TEST(CsvProposal, NeverGuessesALoneComma) {
  EXPECT_EQ(proposed("Date;Close\n2026-02-26;12,345\n"), u"; yyyy-MM-dd . Date Close; doubt 12,345: . or ,");
  EXPECT_EQ(proposed("Date;Close\n2026-02-26;12.345\n"), u"; yyyy-MM-dd . Date Close; doubt 12.345: . or ,");
  EXPECT_EQ(proposed("Date;Close\n2026-02-26;12,345\n2026-02-27;12,5\n"), u"; yyyy-MM-dd , Date Close");
  EXPECT_EQ(proposed("Date;Close\n2026-02-26;12345\n"), u"; yyyy-MM-dd . Date Close");
}

TEST(CsvProposal, FindsHeadingsBehindADescription) {
  EXPECT_EQ(proposed("Bank of somewhere\n\"Rates, by day\"\n\nDate,Price\n2026-02-26,1.37\n"),
            u", yyyy-MM-dd . Date Price");
}

TEST(CsvProposal, FindsColumnsWithoutHeadings) {
  EXPECT_EQ(proposed("20260412;10,5;900\n20260411;10,6;800\n"), u"; yyyyMMdd , 1 2; doubt 10,5, 900: 2 or 3");
  EXPECT_EQ(proposed("QXZ,2026-04-12,9.9,10.2,9.8,10.1,900\nQXZ,2026-04-11,9.8,10.3,9.7,10.0,800\n"),
            u", yyyy-MM-dd . 2 3 4 5 6 7; doubt 9.9, 10.2, 9.8, 10.1, 900: 6 or 3");
  EXPECT_FALSE(proposeCsvFormat("2026-04-12,1.5\n").format.hasHeading);
}

TEST(CsvProposal, SaysWhatIsMissing) {
  const auto failureOf = [](const char* csv) { return messageOf([&] { proposeCsvFormat(csv); }); };
  EXPECT_EQ(failureOf("a,b\n1,2\n"), u"no row of headings has one for the day");
  EXPECT_EQ(failureOf("Date,Volume\n2026-02-26,2\n"), u"no row of headings has one for the close");
  EXPECT_EQ(failureOf("Date,Close\n"), u"no row has a day and a price");
  EXPECT_EQ(failureOf("Date,Close\n2026-02-26,N/A\n"), u"no row has a day and a price");
  EXPECT_EQ(failureOf("Date,Close\nweek 5,1\n"), u"the days are in no known form: \"week 5\"");
  EXPECT_EQ(failureOf("Date,Close\n2026-02-26,1.2.3\n"), u"the prices are in no known form: \"1.2.3\"");
}

} // namespace
} // namespace Tallymoor
