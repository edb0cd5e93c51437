#pragma once
#include "session/OpenPortfolios.h"
#include <cstdint>
#include <string>

namespace Tallymoor {

// Records of portfolios from their texts, for the journal. Under the big mutex.

/// Gives an open portfolio the records of a text, in the elements that are there, so whoever refers to the
/// portfolio's element may go on; its events are other elements from then on. The name must be the
/// portfolio's. The days of the capital record from the earliest difference on are computed again. Throws
/// Exception and changes nothing when the text can't be read.
void replaceRecords(SharePortfolioUser& portfolio, const std::string& text);

/// Opens a portfolio whose records are those of a text, at that place among the portfolios. No open one has
/// its name. Throws Exception and changes nothing when the text can't be read.
void openFromText(OpenPortfolios& open, XMLPortfolios& records, const std::string& text, std::uint32_t place);

} // namespace Tallymoor
