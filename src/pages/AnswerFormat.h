#pragma once
#include "pages/AnswerTable.h"
#include <cstdint>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// Which reader an answer is for.
enum class AnswerReader : std::uint8_t { Walk, Headings, Json, Csv };

/// Where a column stands: a JSON path, the text or number of a heading, by the reader.
struct ColumnPlace {
  AnswerColumn column;
  String place;
};

/// How the answers of a source are turned into rows, days and numbers. All of it is said by the source's
/// document; nothing is guessed.
struct AnswerFormat {
  AnswerReader reader = AnswerReader::Csv;
  std::vector<ColumnPlace> columns;
  std::vector<String> errorPaths; ///< JSON paths at which the source tells an error

  // CSV alone.
  char separator = ',';
  std::size_t skipLines = 0; ///< before the heading, or before the first row without headings
  bool hasHeading = true; ///< columns are found by the texts of a heading, otherwise by their number from 1

  // Texts.
  String datePattern = u"yyyy-MM-dd"; ///< letters as ICU's date patterns; or one of the EPOCH_ names
  String dateLocale;                  ///< such as "de", for names of months; empty means English
  String timeZone;                    ///< IANA name, for moments; empty means UTC
  char16_t decimalSign = u'.';
  double factor = 1.0; ///< by which each price is multiplied: 0.01 for pence
  bool invert = false; ///< each price is 1 divided by the number: for rates of exchange
  String currency;     ///< ISO code; empty where the answer tells it or nobody knows
};

// Date patterns for a count from the start of 1970.
inline constexpr std::u16string_view EPOCH_SECONDS = u"epoch-seconds";
inline constexpr std::u16string_view EPOCH_MILLISECONDS = u"epoch-milliseconds";
inline constexpr std::u16string_view EPOCH_DAYS = u"epoch-days";

} // namespace Tallymoor
