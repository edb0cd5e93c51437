#pragma once
#include "foundation/Date.h"
#include "market/CachedShare.h"
#include "market/CodeSearchResult.h"
#include "pages/AnswerFormat.h"
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace Tallymoor {

// What the answers of a source say, read as its format says. The bytes are UTF-8. All throw AnswerException
// with the place and the cause for an answer that is not in that form: nothing of such an answer is taken.

/// Past days of one stock.
struct AnsweredHistory {
  std::map<Date, ShareValue> prices; ///< of two rows of one day the later one
  std::map<Date, ShareValue> future; ///< rows of days to come, which can't be right
  std::map<Date, double> dividends;  ///< cash a share, above 0
  std::map<Date, double> splits;     ///< shares that one became: 2 for a split 2:1; never 1
  String currency;                   ///< of the answer, else of the format; empty when neither tells
  std::size_t passedOver = 0;        ///< rows without a day or a price

  /// Adds another part of the same history; where both have a day, this one counts.
  void add(AnsweredHistory part);
};
/// Tomorrow, since the clock of an exchange may be a day ahead of ours. What is later is a day to come.
Date lastBelievableDay();

AnsweredHistory readHistory(std::string_view bytes, const AnswerFormat& format);

/// The last price of one stock.
struct AnsweredPrice {
  double price = 0.0;
  std::optional<Date> day{}; ///< where the answer tells it
  String currency{};         ///< as above
};
/// Nothing when the answer has no price, as for a stock that was not traded.
std::optional<AnsweredPrice> readPrice(std::string_view bytes, const AnswerFormat& format);

/// What a search found; rows without a code are left out.
std::vector<CodeSearchResult> readSearch(std::string_view bytes, const AnswerFormat& format);

} // namespace Tallymoor
