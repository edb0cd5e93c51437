#include "market/SourceAnswer.h"
#include "pages/AnswerFigures.h"
#include "pages/AnswerReading.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Fault = AnswerException::Fault;

/// Runs the work on a row. A failure gets the place of the row at its head.
template <typename Work>
void onRow(const AnswerRow& row, Work work) {
  try {
    work();
  } catch (const AnswerException& failure) {
    throw AnswerException(failure.fault(), u"row " + String::fromLong(static_cast<std::int64_t>(row.place)) +
                                               u": " + failure.message());
  }
}

std::optional<double> priceIn(const AnswerRow& row, Column column, const AnswerFigures& figures) {
  return row[column] ? figures.price(*row[column]) : std::nullopt;
}

/// 0 when it is missing or no number: it is only shown.
std::int32_t volumeIn(const AnswerRow& row, const AnswerFigures& figures) {
  const double volume = row[Column::Volume] ? figures.volume(*row[Column::Volume]).value_or(0.0) : 0.0;
  constexpr double MOST = 2147483647.0;
  return static_cast<std::int32_t>(std::clamp(std::trunc(volume), 0.0, MOST));
}

void takeEvents(const AnswerRow& row, const Date& day, const AnswerFigures& figures,
                AnsweredHistory& history) {
  if (const std::optional<double> dividend = priceIn(row, Column::Dividend, figures))
    history.dividends.insert_or_assign(day, *dividend);
  const std::optional<double> split = row[Column::Split] ? figures.number(*row[Column::Split]) : std::nullopt;
  if (split && *split > 0.0 && *split != 1.0)
    history.splits.insert_or_assign(day, *split);
}

/// True when the row has a price.
bool takeRow(const AnswerRow& row, const AnswerFigures& figures, AnsweredHistory& history) {
  if (!row[Column::Date])
    return false;
  const Date day = figures.day(*row[Column::Date]);
  const bool isToCome = day > lastBelievableDay();
  if (!isToCome)
    takeEvents(row, day, figures, history);
  const std::optional<double> close = priceIn(row, Column::Close, figures);
  if (!close)
    return false;
  ShareValue value;
  value.close = *close;
  value.high = priceIn(row, Column::High, figures).value_or(0.0);
  value.low = priceIn(row, Column::Low, figures).value_or(0.0);
  value.volume = volumeIn(row, figures);
  (isToCome ? history.future : history.prices).insert_or_assign(day, value);
  return true;
}

/// The one currency of all rows, else that of the format.
String currencyOf(const AnswerTable& table, const AnswerFormat& format) {
  String currency;
  for (const AnswerRow& row : table.rows) {
    if (!row[Column::Currency] || row[Column::Currency]->empty())
      continue;
    if (!currency.empty() && currency != *row[Column::Currency])
      throw AnswerException(Fault::Unreadable,
                            u"prices in two currencies: " + currency + u" and " + *row[Column::Currency]);
    currency = *row[Column::Currency];
  }
  return currency.empty() ? format.currency : currency;
}

} // namespace

Date lastBelievableDay() {
  return Date::realToday().plusDays(1);
}

void AnsweredHistory::add(AnsweredHistory part) {
  prices.merge(part.prices);
  future.merge(part.future);
  dividends.merge(part.dividends);
  splits.merge(part.splits);
  passedOver += part.passedOver;
  if (currency.empty())
    currency = std::move(part.currency);
}

AnsweredHistory readHistory(std::string_view bytes, const AnswerFormat& format) {
  const AnswerTable table = readAnswerTable(bytes, format);
  const AnswerFigures figures(format);
  AnsweredHistory history;
  history.passedOver = table.passedOver;
  for (const AnswerRow& row : table.rows)
    onRow(row, [&] { history.passedOver += takeRow(row, figures, history) ? 0 : 1; });
  const bool hasRows = !table.rows.empty() || table.passedOver > 0;
  // With days to come alone nothing can be kept, so the next source is asked.
  if (hasRows && history.prices.empty() && history.dividends.empty() && history.splits.empty())
    throw AnswerException(Fault::Unreadable, u"none of the rows has a day and a price");
  history.currency = currencyOf(table, format);
  return history;
}

std::optional<AnsweredPrice> readPrice(std::string_view bytes, const AnswerFormat& format) {
  const AnswerTable table = readAnswerTable(bytes, format);
  const AnswerFigures figures(format);
  std::optional<AnsweredPrice> last;
  for (const AnswerRow& row : table.rows)
    onRow(row, [&] {
      const std::optional<double> price = priceIn(row, Column::Close, figures);
      if (!price)
        return;
      AnsweredPrice answered{*price, std::nullopt, {}};
      if (row[Column::Date])
        answered.day = figures.day(*row[Column::Date]);
      if (!last || !answered.day || !last->day || *answered.day >= *last->day)
        last = answered;
    });
  if (last)
    last->currency = currencyOf(table, format);
  return last;
}

std::vector<CodeSearchResult> readSearch(std::string_view bytes, const AnswerFormat& format) {
  std::vector<CodeSearchResult> results;
  for (const AnswerRow& row : readAnswerTable(bytes, format).rows)
    if (row[Column::Code] && !row[Column::Code]->trimmed().empty())
      results.push_back({row[Column::Code]->trimmed(), row[Column::Name].value_or(u"").trimmed(),
                         row[Column::Market].value_or(u"").trimmed()});
  return results;
}

} // namespace Tallymoor
