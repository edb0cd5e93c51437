#pragma once
#include "PriceHistory.h"
#include <string>

namespace SampleService {

// The pages of the service. They are as irregular as those of real finance sites: unclosed tags, scripts,
// comments, entities, nested tables, unquoted attributes. The locator documents in assets/defaults read them.

/// A quote page. The price is in ten-thousandths.
std::string quotePage(const Listing& listing, std::int64_t price, std::int64_t previousClose);
/// Rows and events from first to last, newest first, at most 250 rows. A page without a table if there are
/// none.
std::string historyPage(const Listing& listing, const PriceHistory& history, Day first, Day last);
/// The listings that match a text. A page without a table if there are none.
std::string searchPage(const std::string& text, const std::vector<Listing>& found);
/// The page for an unknown code or address.
std::string notFoundPage(const std::string& what);

/// Escapes a text for HTML.
std::string escapedForHtml(const std::string& text);

} // namespace SampleService
