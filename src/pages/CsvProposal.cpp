#include "pages/CsvProposal.h"
#include "pages/AnswerFigures.h"
#include "pages/CsvTable.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <array>
#include <map>
#include <optional>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Fault = AnswerException::Fault;
using Fields = std::vector<String>;

constexpr std::size_t HEADING_ROWS = 50; ///< descriptions of central banks take some 30 rows
constexpr std::array SEPARATORS{',', ';', '\t', '|'};

struct KnownHeading {
  Column column;
  std::u16string_view text;
};

/// In lower case. Of several headings for one column in a row the first in this list counts.
constexpr std::array HEADINGS{KnownHeading{Column::Date, u"date"},
                              KnownHeading{Column::Date, u"timestamp"},
                              KnownHeading{Column::Date, u"datetime"},
                              KnownHeading{Column::Date, u"time"},
                              KnownHeading{Column::Date, u"trade date"},
                              KnownHeading{Column::Date, u"time_period"},
                              KnownHeading{Column::Date, u"datum"},
                              KnownHeading{Column::Date, u"fecha"},
                              KnownHeading{Column::Date, u"data"},
                              KnownHeading{Column::Date, u"d\u00E1tum"},
                              KnownHeading{Column::Close, u"close"},
                              KnownHeading{Column::Close, u"close/last"},
                              KnownHeading{Column::Close, u"last"},
                              KnownHeading{Column::Close, u"price"},
                              KnownHeading{Column::Close, u"obs_value"},
                              KnownHeading{Column::Close, u"schluss"},
                              KnownHeading{Column::Close, u"schlusskurs"},
                              KnownHeading{Column::Close, u"schlu\u00DFkurs"},
                              KnownHeading{Column::Close, u"kurs"},
                              KnownHeading{Column::Close, u"cl\u00F4ture"},
                              KnownHeading{Column::Close, u"cierre"},
                              KnownHeading{Column::Close, u"chiusura"},
                              KnownHeading{Column::Close, u"ultimo"},
                              KnownHeading{Column::Close, u"z\u00E1r\u00F3\u00E1r"},
                              KnownHeading{Column::Close, u"z\u00E1r\u00F3"},
                              KnownHeading{Column::Open, u"open"},
                              KnownHeading{Column::Open, u"er\u00F6ffnung"},
                              KnownHeading{Column::Open, u"er\u00F6ffnungskurs"},
                              KnownHeading{Column::Open, u"ouverture"},
                              KnownHeading{Column::Open, u"apertura"},
                              KnownHeading{Column::Open, u"nyit\u00F3"},
                              KnownHeading{Column::High, u"high"},
                              KnownHeading{Column::High, u"hoch"},
                              KnownHeading{Column::High, u"tageshoch"},
                              KnownHeading{Column::High, u"plus haut"},
                              KnownHeading{Column::High, u"m\u00E1ximo"},
                              KnownHeading{Column::High, u"massimo"},
                              KnownHeading{Column::High, u"max"},
                              KnownHeading{Column::Low, u"low"},
                              KnownHeading{Column::Low, u"tief"},
                              KnownHeading{Column::Low, u"tagestief"},
                              KnownHeading{Column::Low, u"plus bas"},
                              KnownHeading{Column::Low, u"m\u00EDnimo"},
                              KnownHeading{Column::Low, u"minimo"},
                              KnownHeading{Column::Low, u"min"},
                              KnownHeading{Column::Volume, u"volume"},
                              KnownHeading{Column::Volume, u"vol."},
                              KnownHeading{Column::Volume, u"volumen"},
                              KnownHeading{Column::Volume, u"st\u00FCck"},
                              KnownHeading{Column::Volume, u"forgalom"},
                              KnownHeading{Column::AdjustedClose, u"adj close"},
                              KnownHeading{Column::AdjustedClose, u"adj. close"},
                              KnownHeading{Column::AdjustedClose, u"adjusted_close"},
                              KnownHeading{Column::AdjustedClose, u"adjclose"},
                              KnownHeading{Column::Dividend, u"divcash"},
                              KnownHeading{Column::Dividend, u"dividends"},
                              KnownHeading{Column::Split, u"splitfactor"},
                              KnownHeading{Column::Split, u"stock splits"},
                              KnownHeading{Column::Currency, u"currency"},
                              KnownHeading{Column::Currency, u"w\u00E4hrung"}};

/// Each reads a set of texts of its own: two that read the same texts as other days make a doubt.
constexpr std::array<std::u16string_view, 18> DATE_PATTERNS{u"yyyy-MM-dd",
                                                            u"yyyy/MM/dd",
                                                            u"yyyy.MM.dd",
                                                            u"yyyy. MM. dd.",
                                                            u"yyyy.MM.dd.",
                                                            u"yyyyMMdd",
                                                            u"dd/MM/yyyy",
                                                            u"MM/dd/yyyy",
                                                            u"dd.MM.yyyy",
                                                            u"dd-MM-yyyy",
                                                            u"MM-dd-yyyy",
                                                            u"d MMM yyyy",
                                                            u"d-MMM-yyyy",
                                                            u"MMM d, yyyy",
                                                            u"dd MMMM yyyy",
                                                            u"yyyy-MM-dd HH:mm:ss",
                                                            u"yyyy-MM-dd'T'HH:mm:ssXXX",
                                                            u"yyyy-MM-dd'T'HH:mm:ss.SSSXXX"};

std::vector<ColumnPlace> knownColumns(const Fields& row) {
  std::vector<ColumnPlace> columns;
  for (const KnownHeading& heading : HEADINGS) {
    const bool isTaken = std::any_of(columns.begin(), columns.end(), [&](const ColumnPlace& column) {
      return column.column == heading.column;
    });
    const auto field = std::find_if(row.begin(), row.end(), [&](const String& text) {
      return std::u16string_view(text.toLower()) == heading.text;
    });
    if (!isTaken && field != row.end())
      columns.push_back({heading.column, *field});
  }
  return columns;
}

bool holds(const std::vector<ColumnPlace>& columns, Column wanted) {
  return std::any_of(columns.begin(), columns.end(),
                     [wanted](const ColumnPlace& column) { return column.column == wanted; });
}

/// Finds the separator and the row of headings.
AnswerFormat formatByHeadings(std::string_view bytes) {
  AnswerFormat format;
  bool hasDay = false;
  for (const char separator : SEPARATORS) {
    const std::vector<Fields> rows = readCsvRows(bytes, separator);
    for (std::size_t i = 0; i < std::min(rows.size(), HEADING_ROWS); ++i) {
      const std::vector<ColumnPlace> columns = knownColumns(rows[i]);
      hasDay = hasDay || holds(columns, Column::Date);
      if (!holds(columns, Column::Date) || !holds(columns, Column::Close) ||
          columns.size() <= format.columns.size())
        continue;
      format.columns = columns;
      format.separator = separator;
    }
  }
  if (format.columns.empty())
    throw AnswerException(Fault::Unreadable, hasDay ? u"no row of headings has one for the close"
                                                    : u"no row of headings has one for the day");
  return format;
}

std::vector<String> textsOf(const AnswerTable& table, std::initializer_list<Column> columns) {
  std::vector<String> texts;
  for (const AnswerRow& row : table.rows)
    for (const Column column : columns)
      if (row[column] && holdsDigits(*row[column]))
        texts.push_back(*row[column]);
  return texts;
}

/// The values of the texts in a format; nothing when one of them cannot be read.
template <typename Value, typename Read>
std::optional<std::vector<Value>> readAll(const std::vector<String>& texts, Read read) {
  std::vector<Value> values;
  try {
    for (const String& text : texts)
      values.push_back(read(text));
  } catch (const AnswerException&) {
    return std::nullopt;
  }
  return values;
}

/// The first text that two readings take for different values.
template <typename Value>
String firstDifference(const std::vector<String>& texts, const std::vector<Value>& some,
                       const std::vector<Value>& others) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (some[i] != others[i])
      return texts[i];
  return {};
}

void settleDays(const std::vector<String>& texts, FormatProposal& proposal) {
  std::optional<std::vector<Date>> first;
  for (const std::u16string_view pattern : DATE_PATTERNS) {
    AnswerFormat tried;
    tried.datePattern = String::Base(pattern);
    const AnswerFigures figures(tried);
    const auto days = readAll<Date>(texts, [&](const String& text) { return figures.day(text); });
    if (!days)
      continue;
    if (!first) {
      first = days;
      proposal.format.datePattern = tried.datePattern;
    } else if (const String example = firstDifference(texts, *first, *days); !example.empty()) {
      proposal.doubts.push_back(
          {FormatDoubt::About::DateOrder, example, {proposal.format.datePattern, tried.datePattern}});
    }
  }
  if (!first)
    throw AnswerException(Fault::Unreadable, u"the days are in no known form: \"" + texts.front() + u"\"");
}

void settleDecimalSign(const std::vector<String>& texts, FormatProposal& proposal) {
  const auto valuesWith = [&](char16_t sign) {
    AnswerFormat tried;
    tried.decimalSign = sign;
    const AnswerFigures figures(tried);
    return readAll<double>(texts, [&](const String& text) { return figures.number(text).value_or(0.0); });
  };
  const auto withPoint = valuesWith(u'.');
  const auto withComma = valuesWith(u',');
  if (!withPoint && !withComma)
    throw AnswerException(Fault::Unreadable, u"the prices are in no known form: \"" + texts.front() + u"\"");
  proposal.format.decimalSign = withPoint ? u'.' : u',';
  if (!withPoint || !withComma)
    return;
  if (const String example = firstDifference(texts, *withPoint, *withComma); !example.empty())
    proposal.doubts.push_back({FormatDoubt::About::DecimalSign, example, {u".", u","}});
}

} // namespace

FormatProposal proposeCsvFormat(std::string_view bytes) {
  FormatProposal proposal;
  proposal.format = formatByHeadings(bytes);
  const AnswerTable table = readCsvTable(bytes, proposal.format);
  const std::vector<String> days = textsOf(table, {Column::Date});
  const std::vector<String> prices = textsOf(table, {Column::Close, Column::Open, Column::High, Column::Low});
  if (days.empty() || prices.empty())
    throw AnswerException(Fault::Unreadable, u"no row has a day and a price");
  settleDays(days, proposal);
  settleDecimalSign(prices, proposal);
  return proposal;
}

} // namespace Tallymoor
