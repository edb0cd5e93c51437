#pragma once
#include "PriceHistory.h"
#include <string>

namespace SampleService {

// The pages of the service, as untidy as those of real finance sites: unclosed tags, scripts, comments,
// entities, tables in tables, attributes without quotes. The locator documents in assets/defaults walk them.

/// A quote page; the price in ten-thousandths.
std::string quotePage(const Listing& listing, std::int64_t price, std::int64_t previousClose);
/// The rows and events from first to last, newest first, at most 250 rows; a page without a table when there
/// are none.
std::string historyPage(const Listing& listing, const PriceHistory& history, Day first, Day last);
/// The listings found for a text; a page without a table when there are none.
std::string searchPage(const std::string& text, const std::vector<Listing>& found);
/// What an unknown code or address gets.
std::string notFoundPage(const std::string& what);

/// Text as it must stand in a page.
std::string escapedForHtml(const std::string& text);

} // namespace SampleService
