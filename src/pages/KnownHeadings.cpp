#include "pages/KnownHeadings.h"
#include <algorithm>
#include <array>
#include <string_view>
#include <unicode/uchar.h>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;

struct KnownHeading {
  Column column;
  std::u16string_view text;
};

/// Letters and digits in lower case. Of several headings for one column the first in this list counts.
constexpr std::array HEADINGS{KnownHeading{Column::Date, u"date"},
                              KnownHeading{Column::Date, u"timestamp"},
                              KnownHeading{Column::Date, u"datetime"},
                              KnownHeading{Column::Date, u"tradedate"},
                              KnownHeading{Column::Date, u"latesttradingday"},
                              KnownHeading{Column::Date, u"timeperiod"},
                              KnownHeading{Column::Date, u"time"},
                              KnownHeading{Column::Date, u"day"},
                              KnownHeading{Column::Date, u"datum"},
                              KnownHeading{Column::Date, u"tag"},
                              KnownHeading{Column::Date, u"fecha"},
                              KnownHeading{Column::Date, u"data"},
                              KnownHeading{Column::Date, u"d\u00E1tum"},
                              KnownHeading{Column::Date, u"nap"},
                              KnownHeading{Column::Close, u"close"},
                              KnownHeading{Column::Close, u"closelast"},
                              KnownHeading{Column::Close, u"closeprice"},
                              KnownHeading{Column::Close, u"closingprice"},
                              KnownHeading{Column::Close, u"last"},
                              KnownHeading{Column::Close, u"lastprice"},
                              KnownHeading{Column::Close, u"pricelast"},
                              KnownHeading{Column::Close, u"latestprice"},
                              KnownHeading{Column::Close, u"price"},
                              KnownHeading{Column::Close, u"obsvalue"},
                              KnownHeading{Column::Close, u"value"},
                              KnownHeading{Column::Close, u"schluss"},
                              KnownHeading{Column::Close, u"schlusskurs"},
                              KnownHeading{Column::Close, u"schlu\u00DFkurs"},
                              KnownHeading{Column::Close, u"schlu\u00DF"},
                              KnownHeading{Column::Close, u"kurs"},
                              KnownHeading{Column::Close, u"cl\u00F4ture"},
                              KnownHeading{Column::Close, u"cierre"},
                              KnownHeading{Column::Close, u"chiusura"},
                              KnownHeading{Column::Close, u"ultimo"},
                              KnownHeading{Column::Close, u"z\u00E1r\u00F3\u00E1r"},
                              KnownHeading{Column::Close, u"z\u00E1r\u00F3"},
                              KnownHeading{Column::Close, u"z\u00E1r\u00F3\u00E1rfolyam"},
                              KnownHeading{Column::Close, u"utols\u00F3"},
                              KnownHeading{Column::Close, u"utols\u00F3\u00E1r"},
                              KnownHeading{Column::Close, u"\u00E1rfolyam"},
                              KnownHeading{Column::Open, u"open"},
                              KnownHeading{Column::Open, u"er\u00F6ffnung"},
                              KnownHeading{Column::Open, u"er\u00F6ffnungskurs"},
                              KnownHeading{Column::Open, u"ouverture"},
                              KnownHeading{Column::Open, u"apertura"},
                              KnownHeading{Column::Open, u"nyit\u00F3"},
                              KnownHeading{Column::Open, u"nyit\u00F3\u00E1r"},
                              KnownHeading{Column::High, u"high"},
                              KnownHeading{Column::High, u"hoch"},
                              KnownHeading{Column::High, u"tageshoch"},
                              KnownHeading{Column::High, u"plushaut"},
                              KnownHeading{Column::High, u"m\u00E1ximo"},
                              KnownHeading{Column::High, u"massimo"},
                              KnownHeading{Column::High, u"max"},
                              KnownHeading{Column::High, u"maximum"},
                              KnownHeading{Column::Low, u"low"},
                              KnownHeading{Column::Low, u"tief"},
                              KnownHeading{Column::Low, u"tagestief"},
                              KnownHeading{Column::Low, u"plusbas"},
                              KnownHeading{Column::Low, u"m\u00EDnimo"},
                              KnownHeading{Column::Low, u"minimo"},
                              KnownHeading{Column::Low, u"min"},
                              KnownHeading{Column::Low, u"minimum"},
                              KnownHeading{Column::Volume, u"volume"},
                              KnownHeading{Column::Volume, u"vol"},
                              KnownHeading{Column::Volume, u"volumen"},
                              KnownHeading{Column::Volume, u"st\u00FCck"},
                              KnownHeading{Column::Volume, u"forgalom"},
                              KnownHeading{Column::AdjustedClose, u"adjclose"},
                              KnownHeading{Column::AdjustedClose, u"adjustedclose"},
                              KnownHeading{Column::Dividend, u"divcash"},
                              KnownHeading{Column::Dividend, u"dividends"},
                              KnownHeading{Column::Split, u"splitfactor"},
                              KnownHeading{Column::Split, u"stocksplits"},
                              KnownHeading{Column::Currency, u"currency"},
                              KnownHeading{Column::Currency, u"w\u00E4hrung"}};

/// "4. Close (AUD)*" as "close".
String essence(const String& heading) {
  const String text = heading.substr(0, std::max<std::size_t>(1, heading.find(u'('))).trimmed().toLower();
  std::size_t begin = text.find_first_not_of(u"0123456789");
  if (begin == String::npos || begin == 0 || text[begin] != u'.')
    begin = 0;
  String letters;
  std::copy_if(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), std::back_inserter(letters),
               [](char16_t unit) { return u_isalnum(unit); });
  return letters;
}

} // namespace

std::vector<ColumnPlace> knownColumns(const std::vector<String>& headings) {
  std::vector<String> texts;
  std::transform(headings.begin(), headings.end(), std::back_inserter(texts), essence);
  std::vector<ColumnPlace> columns;
  for (const KnownHeading& known : HEADINGS) {
    const auto found = std::find_if(texts.begin(), texts.end(), [&](const String& text) {
      return std::u16string_view(text) == known.text;
    });
    if (found != texts.end() && !holds(columns, known.column))
      columns.push_back({known.column, headings[static_cast<std::size_t>(found - texts.begin())]});
  }
  return columns;
}

bool holds(const std::vector<ColumnPlace>& columns, AnswerColumn wanted) {
  return std::any_of(columns.begin(), columns.end(),
                     [wanted](const ColumnPlace& column) { return column.column == wanted; });
}

} // namespace Tallymoor
