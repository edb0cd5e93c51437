#include "workbench/AnswerShow.h"
#include "market/PriceSource.h"
#include "market/SourceAnswer.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include <cstdio>

namespace Tallymoor {

namespace {

constexpr std::size_t SHOWN_ENDS = 3; ///< rows shown at each end of a long table
constexpr int PRICE_DECIMALS = 4;

String figure(double value) {
  constexpr std::size_t WIDTH = 14;
  return padded(value == 0.0 ? String(u"-") : String::fromDouble(value, PRICE_DECIMALS), WIDTH);
}

void showRow(PlainOutput& out, const Date& day, const ShareValue& value) {
  out.line(isoDay(day) + u"  " + figure(value.close) + figure(value.high) + figure(value.low) +
               String::fromLong(value.volume),
           1);
}

void showEvents(PlainOutput& out, const AnsweredHistory& history) {
  for (const auto& [day, dividend] : history.dividends)
    out.line(u"dividend on " + isoDay(day) + u": " + String::fromDouble(dividend, PRICE_DECIMALS), 1);
  for (const auto& [day, split] : history.splits)
    out.line(u"split on " + isoDay(day) + u": one share became " + String::fromDouble(split, PRICE_DECIMALS),
             1);
}

String withCurrency(const String& currency) {
  return currency.empty() ? String(u", in a currency that nobody tells") : u", in " + currency;
}

bool showHistory(PlainOutput& out, const AnsweredHistory& history, bool allRows) {
  out.line(u"Read: " + counted(history.prices.size(), u"day", u"days") + withCurrency(history.currency) +
           u"; " + counted(history.passedOver, u"row", u"rows") + u" passed over");
  if (!history.prices.empty())
    out.line(u"day         close         high          low           volume", 1);
  std::size_t number = 0;
  for (const auto& [day, value] : history.prices) {
    const bool isAtEnd = number < SHOWN_ENDS || number + SHOWN_ENDS >= history.prices.size();
    if (allRows || isAtEnd)
      showRow(out, day, value);
    else if (number == SHOWN_ENDS)
      out.line(u"...", 1);
    ++number;
  }
  showEvents(out, history);
  return !history.prices.empty();
}

bool showPrice(PlainOutput& out, const std::optional<AnsweredPrice>& price) {
  if (!price) {
    out.line(u"Read: no price");
    return false;
  }
  out.line(u"Read: the price " + String::fromDouble(price->price, PRICE_DECIMALS) +
           (price->day ? u" of " + isoDay(*price->day) : String()) + withCurrency(price->currency));
  return true;
}

bool showMatches(PlainOutput& out, const std::vector<CodeSearchResult>& results) {
  out.line(u"Read: " + counted(results.size(), u"match", u"matches"));
  for (const CodeSearchResult& result : results)
    out.line(inQuotes(result.code) + u", " + inQuotes(result.name) + u", " + inQuotes(result.market), 1);
  return !results.empty();
}

} // namespace

const SourceRequest* requestOf(const PriceSource& source, SourcePart part) {
  return part == SourcePart::Current   ? source.currentPrice()
         : part == SourcePart::History ? source.history()
                                       : source.search();
}

bool showAnswer(PlainOutput& out, std::string_view bytes, const SourceRequest& request, SourcePart part,
                bool allRows) {
  try {
    switch (part) {
    case SourcePart::Current:
      return showPrice(out, readPrice(bytes, request.format));
    case SourcePart::History:
      return showHistory(out, readHistory(bytes, request.format), allRows);
    case SourcePart::Search:
      break;
    }
    return showMatches(out, readSearch(bytes, request.format));
  } catch (const AnswerException& failure) {
    out.line(String(failure.fault() == AnswerException::Fault::SourceError ? u"REFUSED by the source: "
                                                                           : u"STOPPED: ") +
             failure.message());
    return false;
  }
}

String isoDay(const Date& day) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", static_cast<int>(day.year()),
                static_cast<int>(day.month()), static_cast<int>(day.day()));
  return String(text);
}

} // namespace Tallymoor
