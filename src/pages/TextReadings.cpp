#include "pages/TextReadings.h"
#include "pages/AnswerFigures.h"
#include "pages/AnswerReading.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Fault = AnswerException::Fault;
using Texts = std::vector<String>;

struct DateForm {
  const char16_t* pattern = nullptr;
  const char16_t* locale = nullptr; ///< of the names of months; null for English
};

/// Those that read the same texts as other days make a doubt.
constexpr std::array DATE_FORMS{DateForm{u"yyyy-MM-dd"},
                                DateForm{u"yyyy/MM/dd"},
                                DateForm{u"yyyy.MM.dd"},
                                DateForm{u"yyyy. MM. dd."},
                                DateForm{u"yyyy.MM.dd."},
                                DateForm{u"yyyyMMdd"},
                                DateForm{u"dd/MM/yyyy"},
                                DateForm{u"MM/dd/yyyy"},
                                DateForm{u"dd.MM.yyyy"},
                                DateForm{u"dd-MM-yyyy"},
                                DateForm{u"MM-dd-yyyy"},
                                DateForm{u"dd.MM.yy"},
                                DateForm{u"dd/MM/yy"},
                                DateForm{u"MM/dd/yy"},
                                DateForm{u"yy/MM/dd"},
                                DateForm{u"yy.MM.dd"},
                                DateForm{u"yy-MM-dd"},
                                DateForm{u"d MMM yyyy"},
                                DateForm{u"d-MMM-yyyy"},
                                DateForm{u"d-MMM-yy"},
                                DateForm{u"MMM d, yyyy"},
                                DateForm{u"MMMM d, yyyy"},
                                DateForm{u"dd MMMM yyyy"},
                                DateForm{u"EEE, MMM d, yyyy"},
                                DateForm{u"d. MMM yyyy", u"de"},
                                DateForm{u"d. LLL yyyy", u"de"},
                                DateForm{u"d. MMMM yyyy", u"de"},
                                DateForm{u"yyyy. MMM d.", u"hu"},
                                DateForm{u"yyyy. MMMM d.", u"hu"},
                                DateForm{u"d MMM yyyy", u"fr"},
                                DateForm{u"d MMMM yyyy", u"fr"},
                                DateForm{u"d MMM yyyy", u"es"},
                                DateForm{u"d MMM yyyy", u"it"},
                                DateForm{u"yyyy-MM-dd HH:mm:ss"},
                                DateForm{u"yyyy-MM-dd HH:mm"},
                                DateForm{u"yyyy-MM-dd'T'HH:mm:ss"},
                                DateForm{u"yyyy-MM-dd'T'HH:mm:ssXXX"},
                                DateForm{u"yyyy-MM-dd'T'HH:mm:ss.SSSXXX"}};

/// The readers of the forms, in their order. Kept for each thread, since making one takes long.
const std::vector<std::unique_ptr<AnswerFigures>>& formFigures() {
  thread_local const std::vector<std::unique_ptr<AnswerFigures>> ALL = [] {
    std::vector<std::unique_ptr<AnswerFigures>> all;
    for (const DateForm& form : DATE_FORMS) {
      AnswerFormat format;
      format.datePattern = form.pattern;
      format.dateLocale = form.locale;
      all.push_back(std::make_unique<AnswerFigures>(format));
    }
    return all;
  }();
  return ALL;
}

/// Of the exchanges most asked for; the user may name any other.
constexpr std::array<std::u16string_view, 10> ZONES{
    u"UTC",        u"America/New_York", u"America/Toronto", u"Europe/London",    u"Europe/Berlin",
    u"Asia/Tokyo", u"Asia/Hong_Kong",   u"Asia/Kolkata",    u"Australia/Sydney", u"Pacific/Auckland"};

/// The values of the texts; nothing when one of them cannot be read.
template <typename Value, typename Read>
std::optional<std::vector<Value>> readAll(const Texts& texts, Read read) {
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
String firstDifference(const Texts& texts, const std::vector<Value>& some, const std::vector<Value>& others) {
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (some[i] != others[i])
      return texts[i];
  return {};
}

std::optional<std::vector<Date>> daysIn(const Texts& texts, const AnswerFigures& figures) {
  return readAll<Date>(texts, [&](const String& text) { return figures.day(text); });
}

bool isCount(const String& text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

/// The unit of counts from the start of 1970, by their size: of days from 1980 to 2052, of seconds and
/// milliseconds from 1973 to 2286. Empty for other texts.
std::u16string_view epochOf(const Texts& texts) {
  constexpr std::int64_t FIRST_DAY = 3652;
  constexpr std::int64_t LAST_DAY = 30000;
  const auto allWithin = [&texts](std::int64_t first, std::int64_t last) {
    return std::all_of(texts.begin(), texts.end(), [=](const String& text) {
      return isCount(text) && text.toLong64() >= first && text.toLong64() <= last;
    });
  };
  if (allWithin(100'000'000, 9'999'999'999))
    return EPOCH_SECONDS;
  if (allWithin(100'000'000'000, 9'999'999'999'999))
    return EPOCH_MILLISECONDS;
  return allWithin(FIRST_DAY, LAST_DAY) ? EPOCH_DAYS : std::u16string_view();
}

/// True when the text is a moment that all time zones put at midnight in Greenwich: its day is that of
/// Greenwich then.
bool isMidnightInGreenwich(const String& text, std::u16string_view epoch) {
  constexpr std::int64_t SECONDS_A_DAY = 86400;
  if (epoch == EPOCH_SECONDS)
    return text.toLong64() % SECONDS_A_DAY == 0;
  if (epoch == EPOCH_MILLISECONDS)
    return text.toLong64() % (SECONDS_A_DAY * 1000) == 0;
  return text.contains(u"T00:00:00Z") || text.contains(u"T00:00:00.000Z") ||
         text.contains(u"T00:00:00+00:00");
}

/// A moment has another day in other parts of the world: a doubt, unless all give the same days.
void settleTimeZone(const Texts& texts, FormatProposal& proposal, std::u16string_view epoch) {
  if (!proposal.format.timeZone.empty() ||
      std::all_of(texts.begin(), texts.end(),
                  [epoch](const String& text) { return isMidnightInGreenwich(text, epoch); }))
    return;
  AnswerFormat tried = proposal.format;
  const auto first = daysIn(texts, AnswerFigures(tried));
  String example;
  for (const std::u16string_view zone : ZONES) {
    tried.timeZone = String::Base(zone);
    const auto days = daysIn(texts, AnswerFigures(tried));
    if (example.empty() && first && days)
      example = firstDifference(texts, *first, *days);
  }
  if (example.empty())
    return;
  FormatDoubt doubt{FormatDoubt::About::TimeZone, example, {}};
  for (const std::u16string_view zone : ZONES)
    doubt.choices.emplace_back(String::Base(zone));
  proposal.doubts.push_back(std::move(doubt));
  proposal.format.timeZone = String::Base(ZONES.front());
}

Texts textsOf(const AnswerTable& table, std::initializer_list<Column> columns) {
  Texts texts;
  for (const AnswerRow& row : table.rows)
    for (const Column column : columns)
      if (row[column] && holdsDigits(*row[column]))
        texts.push_back(*row[column]);
  return texts;
}

Texts pricesOf(const AnswerTable& table) {
  return textsOf(table, {Column::Close, Column::Open, Column::High, Column::Low});
}

/// Texts may depend on the sign, since numbers of JSON are written with it.
void settleDecimalSign(std::string_view bytes, FormatProposal& proposal) {
  Texts texts;
  const auto valuesWith = [&](char16_t sign) {
    AnswerFormat tried = proposal.format;
    tried.decimalSign = sign;
    texts = pricesOf(readAnswerTable(bytes, tried));
    const AnswerFigures figures(tried);
    return readAll<double>(texts, [&](const String& text) { return figures.number(text).value_or(0.0); });
  };
  const auto withComma = valuesWith(u',');
  const auto withPoint = valuesWith(u'.');
  if (!withPoint && !withComma)
    throw AnswerException(Fault::Unreadable, u"the prices are in no known form: " + inMessage(texts.front()));
  proposal.format.decimalSign = withPoint ? u'.' : u',';
  if (!withPoint || !withComma)
    return;
  if (const String example = firstDifference(texts, *withPoint, *withComma); !example.empty())
    proposal.doubts.push_back({FormatDoubt::About::DecimalSign, example, {u".", u","}});
}

/// Pence and cents are hundredths of the currency that portfolios are kept in.
void settleHundredths(const AnswerTable& table, FormatProposal& proposal) {
  struct Hundredths {
    std::u16string_view name;
    std::u16string_view currency;
  };
  constexpr std::array KNOWN{Hundredths{u"GBX", u"GBP"}, Hundredths{u"GBp", u"GBP"},
                             Hundredths{u"ZAc", u"ZAR"}, Hundredths{u"ILA", u"ILS"}};
  for (const Hundredths& known : KNOWN)
    if (!table.rows.empty() && std::all_of(table.rows.begin(), table.rows.end(), [&](const AnswerRow& row) {
          return row[Column::Currency] && std::u16string_view(*row[Column::Currency]) == known.name;
        })) {
      constexpr double HUNDREDTH = 0.01;
      proposal.format.factor = HUNDREDTH;
      proposal.format.currency = String::Base(known.currency);
      std::erase_if(proposal.format.columns,
                    [](const ColumnPlace& column) { return column.column == Column::Currency; });
    }
}

/// The numbers of a column with either sign; only their order matters.
std::optional<std::vector<double>> numbersIn(const Texts& texts) {
  for (const char16_t sign : {u'.', u','}) {
    AnswerFormat tried;
    tried.decimalSign = sign;
    const AnswerFigures figures(tried);
    auto numbers =
        readAll<double>(texts, [&](const String& text) { return figures.number(text).value_or(NAN); });
    if (numbers &&
        !std::all_of(numbers->begin(), numbers->end(), [](double value) { return std::isnan(value); }))
      return numbers;
  }
  return std::nullopt;
}

struct NumberColumn {
  String place;
  std::vector<double> values;
};

/// True when the second of four columns is never below, and the third never above, the others.
bool areDaysRanges(const NumberColumn* four) {
  for (std::size_t i = 0; i < four->values.size(); ++i) {
    const std::array row{four[0].values[i], four[1].values[i], four[2].values[i], four[3].values[i]};
    if (std::any_of(row.begin(), row.end(),
                    [&](double value) { return !(value <= row[1]) || !(value >= row[2]); }))
      return false;
  }
  return true;
}

/// Four prices of a day stand in the order open, high, low, close or close, high, low, open, which the values
/// cannot tell. Otherwise any column may be the close.
void settlePrices(const std::vector<NumberColumn>& numbers, const String& example, FormatProposal& proposal) {
  std::vector<ColumnPlace>& columns = proposal.format.columns;
  for (std::size_t i = 0; i + 4 <= numbers.size(); ++i) {
    if (!areDaysRanges(&numbers[i]))
      continue;
    columns.push_back({Column::Open, numbers[i].place});
    columns.push_back({Column::High, numbers[i + 1].place});
    columns.push_back({Column::Low, numbers[i + 2].place});
    columns.push_back({Column::Close, numbers[i + 3].place});
    if (i + 4 < numbers.size())
      columns.push_back({Column::Volume, numbers[i + 4].place});
    proposal.doubts.push_back(
        {FormatDoubt::About::CloseColumn, example, {numbers[i + 3].place, numbers[i].place}});
    return;
  }
  columns.push_back({Column::Close, numbers.front().place});
  FormatDoubt doubt{FormatDoubt::About::CloseColumn, example, {}};
  for (const NumberColumn& column : numbers)
    doubt.choices.push_back(column.place);
  if (numbers.size() > 1)
    proposal.doubts.push_back(std::move(doubt));
}

} // namespace

bool settleDays(const Texts& texts, FormatProposal& proposal) {
  if (texts.empty())
    return false;
  AnswerFormat& format = proposal.format;
  if (const std::u16string_view epoch = epochOf(texts); !epoch.empty()) {
    format.datePattern.assign(epoch);
    if (epoch != EPOCH_DAYS)
      settleTimeZone(texts, proposal, epoch);
    return true;
  }
  FormatDoubt doubt{FormatDoubt::About::DateOrder, {}, {}};
  std::vector<std::vector<Date>> readings;
  for (std::size_t i = 0; i < DATE_FORMS.size(); ++i) {
    const auto days = daysIn(texts, *formFigures()[i]);
    if (!days || std::find(readings.begin(), readings.end(), *days) != readings.end())
      continue;
    const String pattern = DATE_FORMS[i].pattern;
    if (readings.empty()) {
      format.datePattern = pattern;
      format.dateLocale = DATE_FORMS[i].locale;
    } else if (doubt.example.empty()) {
      doubt.example = firstDifference(texts, readings.front(), *days);
    }
    readings.push_back(*days);
    doubt.choices.push_back(pattern);
  }
  if (readings.size() > 1)
    proposal.doubts.push_back(std::move(doubt));
  if (format.datePattern.contains(u"XXX"))
    settleTimeZone(texts, proposal, {});
  return !readings.empty();
}

void settleTexts(std::string_view bytes, FormatProposal& proposal) {
  const AnswerTable table = readAnswerTable(bytes, proposal.format);
  const Texts days = textsOf(table, {Column::Date});
  if (pricesOf(table).empty() || (proposal.isHistory && days.empty()))
    throw AnswerException(Fault::Unreadable, u"no row has a day and a price");
  if (!days.empty() && !settleDays(days, proposal))
    throw AnswerException(Fault::Unreadable, u"the days are in no known form: " + inMessage(days.front()));
  settleDecimalSign(bytes, proposal);
  settleHundredths(table, proposal);
}

bool settleColumns(const std::vector<NamelessColumn>& columns, FormatProposal& proposal) {
  std::vector<NumberColumn> numbers;
  String example;
  bool hasDays = false;
  for (const NamelessColumn& column : columns) {
    FormatProposal tried;
    if (!hasDays && settleDays(column.texts, tried)) {
      hasDays = true;
      proposal.format.columns.push_back({Column::Date, column.place});
    } else if (const auto values = numbersIn(column.texts)) {
      numbers.push_back({column.place, *values});
      example += (example.empty() ? String() : String(u", ")) + column.texts.front();
    }
  }
  std::erase_if(numbers, [&numbers](const NumberColumn& column) {
    return column.values.size() != numbers.front().values.size();
  });
  if (!hasDays || numbers.empty())
    return false;
  settlePrices(numbers, example, proposal);
  return true;
}

} // namespace Tallymoor
