#include "pages/FormatProposal.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

String proposed(const std::string& page) {
  const FormatProposal proposal = proposeFormat("<html><body>" + page + "</body></html>");
  const AnswerFormat& format = proposal.format;
  String text = format.datePattern + u" " + format.dateLocale + u" " + String(1, format.decimalSign);
  for (const ColumnPlace& column : format.columns)
    text += u" " + String::fromLong(static_cast<std::int64_t>(column.column)) + u"=" + column.place;
  for (const FormatDoubt& doubt : proposal.doubts)
    text += u"; doubt " + doubt.example + u": " + doubt.choices[0] + u" or " + doubt.choices[1];
  return text;
}

TEST(PageProposal, ReadsDaysAndNumbersOfSeveralCountries) {
  EXPECT_EQ(proposed("<table><tr><td>Datum</td><td>Er&ouml;ffnung</td><td>Schluss</td></tr>"
                     "<tr><td>03.12.2020</td><td>660,10</td><td>665,89</td></tr></table>"),
            u"dd.MM.yyyy  , 0=Datum 4=Schluss 1=Er\u00F6ffnung");
  EXPECT_EQ(proposed("<table><thead><tr><th>Date</th><th>Close/Last</th></tr></thead>"
                     "<tr><td>08/24/2022</td><td>12.50</td></tr></table>"),
            u"MM/dd/yyyy  . 0=Date 4=Close/Last");
  EXPECT_EQ(proposed("<table><tr><th>D&aacute;tum<th>Z&aacute;r&oacute;&aacute;r (Ft)"
                     "<tr><td>2020. dec. 3.<td>10&nbsp;671,75</table>"),
            u"yyyy. MMM d. hu , 0=D\u00E1tum 4=Z\u00E1r\u00F3\u00E1r (Ft)");
  EXPECT_EQ(proposed("<table><tr><th>Datum<th>Kurs<tr><td>3. Dez. 2020<td>671,75</table>"),
            u"d. MMM yyyy de , 0=Datum 4=Kurs");
}

TEST(PageProposal, LeavesOpenWhatThePageLeavesOpen) {
  EXPECT_EQ(proposed("<table><tr><td>Date<td>Close*<tr><td>08/09/22<td>12,345</table>"),
            u"dd/MM/yy  . 0=Date 4=Close*; doubt 08/09/22: dd/MM/yy or MM/dd/yy; doubt 12,345: . or ,");
}

TEST(PageProposal, SaysWhatIsMissing) {
  EXPECT_EQ(messageOf([] { proposed("<p>x</p>"); }), u"the page has no table");
  EXPECT_EQ(messageOf([] { proposed("<table><tr><td>Date<td>News</table>"); }),
            u"no table of the page has headings for the day and the close");
  EXPECT_EQ(messageOf([] { proposed("<table><tr><td>Date<td>Close</table>"); }),
            u"no row has a day and a price");
}

} // namespace
} // namespace Tallymoor
