#pragma once
#include "foundation/String.h"
#include "foundation/TextFingerprint.h"
#include "session/TextEdits.h"
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// A checksum of a portfolio's records as they are written.
using RecordsState = std::array<unsigned char, 32>;
RecordsState stateOf(const TextFingerprint& records);
inline RecordsState stateOf(std::string_view records) {
  return stateOf(TextFingerprint(records));
}

/// The states that may stand for some records in a journal: the first versions wrote another checksum.
class StatesOf {
public:
  /// The text outlives this.
  explicit StatesOf(std::string_view records) : m_records(records), m_state(stateOf(records)) {}
  bool contain(const RecordsState& state) const;

private:
  std::string_view m_records;
  RecordsState m_state;
  mutable std::optional<RecordsState> m_earlier; ///< computed when it is first needed
};

/// A portfolio before or after a change; without a name and with an empty text for one that is not there.
struct PortfolioText {
  static PortfolioText of(const String& name, std::uint32_t place, std::string_view text) {
    return {name, place, text, stateOf(text)};
  }

  String name;
  std::uint32_t place; ///< among the portfolios of the records
  std::string_view text;
  RecordsState state;
};

/// What a change did to one portfolio.
struct ChangedPortfolio {
  String nameBefore; ///< empty for a new portfolio
  String nameAfter;  ///< empty for a deleted one
  std::uint32_t placeBefore = 0;
  std::uint32_t placeAfter = 0;
  RecordsState before{}; ///< the state of an empty text for a new portfolio
  RecordsState after{};  ///< likewise for a deleted one
  std::vector<TextEdit> edits;

  static ChangedPortfolio between(const PortfolioText& before, const PortfolioText& after);
  ChangedPortfolio reversed() const;
  /// Whether the portfolio comes, goes or gets another name or place by it.
  bool isWhole() const { return nameBefore != nameAfter || placeBefore != placeAfter; }
  /// The records after the change; nothing if these are not those before it.
  std::optional<std::string> appliedTo(std::string_view records) const;

  bool operator==(const ChangedPortfolio&) const = default;
};

/// What one command of the user did, as the journal holds it.
struct Change {
  /// The numbers stand in files and never change.
  enum class Kind : std::uint8_t {
    Made = 1,   ///< a command
    Undone = 2, ///< the change `other` was undone
    Redone = 3, ///< and made again
    Saved = 4,  ///< no change: up to here everything is in the records file
    Dropped = 5 ///< no change: the change `other` did not belong to the records, and is in none
  };

  Kind kind = Kind::Made;
  std::uint64_t number = 0; ///< given by the journal: each has a greater one than those before it
  std::uint64_t other = 0;
  std::int64_t moment = 0; ///< seconds since 1970, UTC
  String sentence;         ///< as the user reads it
  std::vector<ChangedPortfolio> portfolios;

  bool operator==(const Change&) const = default;
};

/// As bytes of a file, compressed; without the number.
std::string packed(const Change& change);
/// Nothing for bytes that `packed` can't have written.
std::optional<Change> unpacked(std::string_view bytes);

} // namespace Tallymoor
