#pragma once
#include "foundation/String.h"
#include <string>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// An entry of a portfolio's records as it is written: an event, or the portfolio or a stock without what
/// lies below it.
struct RecordPiece {
  std::string_view tag; ///< lives as long as the text of the records
  String code;          ///< of the stock; empty where there is none
  std::string text;

  bool operator<(const RecordPiece& other) const {
    return code < other.code || (code == other.code && text < other.text);
  }
};

/// The entries of the text of a portfolio, in the order of the text. Takes texts as `encode` writes them.
std::vector<RecordPiece> piecesOf(std::string_view portfolio);

} // namespace Tallymoor
