#include "Pages.h"
#include <cstdio>

namespace SampleService {

using namespace std::chrono;

namespace {

constexpr std::size_t MOST_ROWS = 250;

std::string withThousandsCommas(std::int64_t whole) {
  std::string text = std::to_string(whole);
  for (std::size_t at = text.size(); at > 3; at -= 3)
    text.insert(at - 3, 1, ',');
  return text;
}

/// "1,234.50": with thousands separators and two decimals, or four below ten.
std::string priceText(std::int64_t price) {
  const bool small = price < 100000;
  char decimals[8];
  if (small)
    std::snprintf(decimals, sizeof decimals, ".%04lld", static_cast<long long>(price % 10000));
  else
    std::snprintf(decimals, sizeof decimals, ".%02lld", static_cast<long long>((price + 50) / 100 % 100));
  return withThousandsCommas(small ? price / 10000 : (price + 50) / 10000) + decimals;
}

/// "3-Mar-06".
std::string dateText(Day day) {
  static const char* const MONTHS[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const year_month_day ymd(day);
  char text[24];
  std::snprintf(text, sizeof text, "%u-%s-%02d", unsigned(ymd.day()), MONTHS[unsigned(ymd.month()) - 1],
                int(ymd.year()) % 100);
  return text;
}

std::string pageHead(const std::string& title) {
  return "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\n<html>\n<head>\n<title>" +
         escapedForHtml(title) +
         " - Sample Market</title>\n"
         "<meta http-equiv=Content-Type content=\"text/html; charset=utf-8\">\n"
         "<link rel=stylesheet href=/style.css>\n"
         "<script type=\"text/javascript\">\n// <td>not a cell</td>\nif (1 < 2 && 3 > 2) { var table = "
         "\"<table><tr>\"; }\n"
         "</script>\n</head>\n<body bgcolor=#ffffff>\n"
         "<!-- header: <table> starts below -->\n"
         "<table width=\"100%\" border=0><tr><td><img src=/logo.gif alt=\"Sample > Market\"></td>"
         "<td align=right>Prices &amp; charts &nbsp;|&nbsp;<a href=/>Home</a><br>All prices are made "
         "up.</td></tr></table>\n"
         "<hr noshade size=1>\n<p>Quotes delayed, as always.\n";
}

const char* const PAGE_FOOT = "<p>&copy; Sample Market<br>\n<ul><li>Help<li>Terms</ul>\n</body>\n</html>\n";

std::string rowsOfPrices(const PriceHistory& history, Day first, Day last) {
  std::string rows;
  std::size_t count = 0;
  auto event = history.events.rbegin();
  for (auto row = history.rows.rbegin(); row != history.rows.rend() && count < MOST_ROWS; ++row) {
    if (row->day < first || row->day > last)
      continue;
    for (; event != history.events.rend() && event->day >= row->day; ++event)
      if (event->day <= last)
        rows += "<tr><td nowrap>" + dateText(event->day) + "</td><td><b>" + escapedForHtml(event->text) +
                "</b></td><td></td><td></td><td></td><td></td><td></td></tr>\n";
    rows += "<tr><td nowrap align=right>" + dateText(row->day) + "</td><td>" + priceText(row->open) +
            "</td><td>" + priceText(row->high) + "</td><td>" + priceText(row->low) + "</td><td>" +
            priceText(row->close) + "</td><td>" + withThousandsCommas(row->volume) + "</td><td>" +
            priceText(row->adjustedClose) + "</td></tr>\n";
    ++count;
  }
  return rows;
}

} // namespace

std::string escapedForHtml(const std::string& text) {
  std::string escaped;
  for (const char c : text)
    switch (c) {
    case '&':
      escaped += "&amp;";
      break;
    case '<':
      escaped += "&lt;";
      break;
    case '>':
      escaped += "&gt;";
      break;
    case '"':
      escaped += "&quot;";
      break;
    default:
      escaped += c;
    }
  return escaped;
}

std::string quotePage(const Listing& listing, std::int64_t price, std::int64_t previousClose) {
  return pageHead(listing.name + " (" + listing.code + ")") + "<h2>" + escapedForHtml(listing.name) +
         "</h2>\n<table id=layout cellpadding=0><tr><td valign=top>\n"
         "<table id=\"quote\" border=1>\n"
         "<tr><th>Last Trade:</th><td><b>" +
         priceText(price) +
         "</b></td></tr>\n"
         "<tr><th>Prev Close:</th><td>" +
         priceText(previousClose) +
         "</td></tr>\n"
         "</table>\n</td><td><img src=/chart.gif><br>&nbsp;Chart</td></tr></table>\n" +
         PAGE_FOOT;
}

std::string historyPage(const Listing& listing, const PriceHistory& history, Day first, Day last) {
  const std::string rows = rowsOfPrices(history, first, last);
  const std::string head = pageHead("Historical prices of " + listing.code);
  if (rows.empty())
    return head + "<p>No prices for this range.\n" + PAGE_FOOT;
  return head +
         "<table id=frame><tr><td>\n<table class=prices id=\"prices\">\n"
         "<tr><th>Date</th><th>Open</th><th>High</th><th>Low</th><th>Close</th><th>Volume</th><th>Adj "
         "Close*</th></tr>\n" +
         rows + "</table>\n<small>* adjusted for splits</small>\n</td></tr></table>\n" + PAGE_FOOT;
}

std::string searchPage(const std::string& text, const std::vector<Listing>& found) {
  std::string page = pageHead("Search for " + text);
  if (found.empty())
    return page + "<p>Nothing matches <i>" + escapedForHtml(text) + "</i>.\n" + PAGE_FOOT;
  page += "<table id=frame><tr><td>\n<table id=\"matches\" border=1>\n"
          "<tr><th>Symbol</th><th>Name</th><th>Market</th></tr>\n";
  for (const Listing& listing : found)
    page += "<tr><td><a href=\"/quote\">" + escapedForHtml(listing.code) + "</a></td><td>" +
            escapedForHtml(listing.name) + "</td><td>" + escapedForHtml(listing.market) + "</td></tr>\n";
  return page + "</table>\n</td></tr></table>\n" + PAGE_FOOT;
}

std::string notFoundPage(const std::string& what) {
  return pageHead("Not found") + "<p>There is no " + escapedForHtml(what) + " here.\n" + PAGE_FOOT;
}

} // namespace SampleService
