#include "support/MarketFixture.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "support/TestHttpServer.h"
#include <array>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <optional>
#include <sstream>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::size_t NUM_PAGES = 3;
constexpr int DEFAULT_MAX_ENTRIES = 200;
constexpr std::chrono::seconds PATIENCE{60};
const std::string PAGE_HEAD = "<html><head><title>Exchange</title></head><body>";
const std::string PAGE_TAIL = "</body></html>";

struct Day {
  double close;
  double high;
  double low;
  int volume;
};

struct Listing {
  String code;
  String name;
  String market;
};

/// How the exchange handles requests of one kind.
struct PageState {
  int status = 200;
  std::string html;
  bool stalled = false;
  std::vector<String> requested;
};

std::string percentDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      decoded.push_back(static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)));
      i += 2;
    } else {
      decoded.push_back(text[i]);
    }
  }
  return decoded;
}

std::map<std::string, std::string> queryOf(const std::string& target) {
  std::map<std::string, std::string> query;
  std::istringstream pairs(target.substr(target.find('?') + 1));
  for (std::string pair; std::getline(pairs, pair, '&');) {
    const std::size_t equals = pair.find('=');
    query[pair.substr(0, equals)] = percentDecoded(pair.substr(equals + 1));
  }
  return query;
}

std::string number(double value) {
  return String::fromDouble(value, 4).toUTF8();
}

std::string tableRow(std::initializer_list<std::string> cells) {
  std::string row = "<tr>";
  for (const std::string& cell : cells)
    row += "<td>" + cell + "</td>";
  return row + "</tr>";
}

/// "3-Mar-06", the date format of the sources.
std::string pageDate(const Date& day) {
  return day.toString(DATE_DISPLAY_MIDDATE1).toUTF8();
}

Date queryDate(std::map<std::string, std::string>& query, const std::string& end) {
  return Date(std::stoi(query[end + "Year"]), std::stoi(query[end + "Month"]) + 1,
              std::stoi(query[end + "Day"]));
}

std::string variable(const std::string& type) {
  return "<URLPart type=\"" + type + "\"/>";
}

std::string literal(const std::string& text) {
  return "<URLPart>" + text + "</URLPart>";
}

std::string tableLocator(const std::string& tableId,
                         std::initializer_list<std::pair<std::string, std::string>> columns) {
  std::string text =
      "<TableLocator><TagLocator><TagFind><TagSearch tagname=\"table\" attr=\"id\" attrVal=\"" + tableId +
      "\"/></TagFind></TagLocator>" +
      "<TagLocator><TagFind><TagMove move=\"In\" name=\"tr\"/></TagFind></TagLocator>";
  int index = 0;
  for (const auto& [type, format] : columns)
    text += "<TagLocator type=\"" + type + "\" format=\"" + format +
            "\"><TagFind><TagMove move=\"In\" name=\"td\" index=\"" + std::to_string(index++) +
            "\"/></TagFind></TagLocator>";
  return text + "</TableLocator>";
}

std::string document(const std::string& root, const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE " + root + " SYSTEM \"" +
         LOCATORS_DTD.toUTF8() + "\">\n<" + root + " active=\"exchange\" version=\"1\">" + content + "</" +
         root + ">";
}

std::string quoteDocument(const std::string& host) {
  return document(
      "CurrentPriceLocators",
      "<CurrentPrice domain=\"exchange\"><URLLocator>" + literal(host + "/quote?code=") + variable("Code") +
          "</URLLocator><TagLocator format=\"Float\"><TagFind><TagSearch tagname=\"div\" attr=\"id\" "
          "attrVal=\"price\"/></TagFind></TagLocator></CurrentPrice>");
}

std::string searchDocument(const std::string& host) {
  return document(
      "CodeSearchLocators",
      "<CodeSearch domain=\"exchange\"><CodeSearchDetail><URLLocator>" + literal(host + "/search?code=") +
          variable("Code") + literal("&amp;country=") + variable("Country") + literal("&amp;kind=") +
          variable("IndexOrShare") + "</URLLocator>" +
          tableLocator("results", {{"Code", "UTF8"}, {"StockName", "UTF8"}, {"MarketName", "UTF8"}}) +
          "</CodeSearchDetail></CodeSearch>");
}

std::string historyDocument(const std::string& host, int maxEntries) {
  std::string address = literal(host + "/history?code=") + variable("Code");
  for (const std::string end : {"start", "end"})
    for (const std::string part : {"Day", "Month", "Year"})
      address += literal("&amp;" + end + part + "=") + variable((end == "start" ? "Start" : "End") + part);
  return document("HistoricalPricesLocators", "<HistoricalPrices domain=\"exchange\" maxEntries=\"" +
                                                  std::to_string(maxEntries) + "\"><URLLocator>" + address +
                                                  "</URLLocator>" +
                                                  tableLocator("prices", {{"Date", "MidDate1"},
                                                                          {"High", "Float"},
                                                                          {"Low", "Float"},
                                                                          {"Close", "Float"},
                                                                          {"Volume", "CommaLong"}}) +
                                                  "</HistoricalPrices>");
}

} // namespace

class MarketFixture::State {
public:
  State() {
    server.setFallback([this](const TestHttpServer::Request& request) { return answer(request); });
  }
  ~State() {
    for (PageState& page : pages)
      change([&] { page.stalled = false; });
    server.stop();
  }

  template <class Change>
  void change(Change work) {
    const std::lock_guard lock(mutex);
    work();
    changed.notify_all();
  }
  PageState& page(Page which) { return pages[static_cast<std::size_t>(which)]; }

  mutable std::mutex mutex; ///< Guards everything except the server.
  std::condition_variable changed;
  std::array<PageState, NUM_PAGES> pages;
  std::map<String, double> currentPrices;
  std::map<String, std::map<Date, Day>> histories;
  std::vector<Listing> listings;
  std::vector<Range> ranges;
  int maxEntries = DEFAULT_MAX_ENTRIES;
  TestHttpServer server; ///< Last, so that its threads end before the other members are destroyed.

private:
  static std::optional<Page> pageOf(const std::string& target) {
    if (target.starts_with("/quote?"))
      return Page::Quote;
    if (target.starts_with("/history?"))
      return Page::History;
    if (target.starts_with("/search?"))
      return Page::Search;
    return std::nullopt;
  }

  TestHttpServer::Response answer(const TestHttpServer::Request& request) {
    const std::optional<Page> which = pageOf(request.target);
    if (!which)
      return {.status = 404};
    auto query = queryOf(request.target);
    std::unique_lock lock(mutex);
    PageState& state = page(*which);
    state.requested.push_back(String::fromUTF8(query["code"]));
    if (*which == Page::History)
      ranges.push_back({queryDate(query, "start"), queryDate(query, "end")});
    changed.notify_all();
    changed.wait(lock, [&state] { return !state.stalled; });
    if (state.status != 200)
      return {.status = state.status};
    return {.body = state.html.empty() ? PAGE_HEAD + content(*which, query) + PAGE_TAIL : state.html};
  }

  std::string content(Page which, std::map<std::string, std::string>& query) const {
    const String code = String::fromUTF8(query["code"]);
    switch (which) {
    case Page::Quote:
      return quote(code);
    case Page::History:
      return history(code, queryDate(query, "start"), queryDate(query, "end"));
    default:
      return search(code.toLower());
    }
  }

  std::string quote(const String& code) const {
    const auto price = currentPrices.find(code);
    if (price == currentPrices.end())
      return "<p>unknown</p>";
    return "<div id=\"price\">" + number(price->second) + "</div>";
  }

  /// Newest first, after an empty row.
  std::string history(const String& code, const Date& start, const Date& end) const {
    const auto found = histories.find(code);
    if (found == histories.end())
      return "<p>unknown</p>";
    std::string rows;
    for (const auto& [day, values] : found->second)
      if (day >= start && day <= end)
        rows = tableRow({pageDate(day), number(values.high), number(values.low), number(values.close),
                         std::to_string(values.volume)}) +
               rows;
    return "<table id=\"prices\">" + tableRow({"", "", "", "", ""}) + rows + "</table>";
  }

  std::string search(const String& text) const {
    std::string rows = tableRow({"", "", ""});
    for (const Listing& listing : listings)
      if (listing.code.toLower().contains(text) || listing.name.toLower().contains(text))
        rows += tableRow({listing.code.toUTF8(), listing.name.toUTF8(), listing.market.toUTF8()});
    return "<table id=\"results\">" + rows + "</table>";
  }
};

MarketFixture::MarketFixture() : m_state(std::make_unique<State>()) {
  writeLocators();
}

MarketFixture::~MarketFixture() = default;

void MarketFixture::setCurrentPrice(const String& code, double price) {
  m_state->change([&] { m_state->currentPrices[code] = price; });
}

void MarketFixture::setDay(const String& code, const Date& day, double close, int volume) {
  setDay(code, day, close, close + 0.5, close - 0.5, volume);
}

void MarketFixture::setDay(const String& code, const Date& day, double close, double high, double low,
                           int volume) {
  m_state->change([&] { m_state->histories[code].insert_or_assign(day, Day{close, high, low, volume}); });
}

void MarketFixture::setHistory(const String& code, const Date& first, const Date& last,
                               const std::function<double(const Date&)>& close) {
  for (Date day = first; day <= last; day.addDays(1))
    if (!day.isWeekend())
      setDay(code, day, close(day));
}

void MarketFixture::setHistory(const String& code, const Date& first, const Date& last, double close) {
  setHistory(code, first, last, [close](const Date&) { return close; });
}

void MarketFixture::addListing(const String& code, const String& name, const String& market) {
  m_state->change([&] { m_state->listings.push_back({code, name, market}); });
}

void MarketFixture::refuse(Page page, int status) {
  m_state->change([&] { m_state->page(page).status = status; });
}

void MarketFixture::answerWith(Page page, const std::string& html) {
  m_state->change([&] { m_state->page(page).html = html; });
}

void MarketFixture::stall(Page page) {
  m_state->change([&] { m_state->page(page).stalled = true; });
}

void MarketFixture::release(Page page) {
  m_state->change([&] { m_state->page(page).stalled = false; });
}

void MarketFixture::awaitRequests(Page page, std::size_t count) {
  std::unique_lock lock(m_state->mutex);
  const bool came = m_state->changed.wait_for(lock, PATIENCE,
                                              [&] { return m_state->page(page).requested.size() >= count; });
  if (!came)
    ADD_FAILURE() << "only " << m_state->page(page).requested.size() << " of " << count << " requests came";
}

std::vector<String> MarketFixture::requested(Page page) const {
  const std::lock_guard lock(m_state->mutex);
  return m_state->page(page).requested;
}

std::vector<MarketFixture::Range> MarketFixture::requestedRanges() const {
  const std::lock_guard lock(m_state->mutex);
  return m_state->ranges;
}

void MarketFixture::setMaxEntries(int entries) {
  m_state->change([&] { m_state->maxEntries = entries; });
  writeLocators();
}

void MarketFixture::writeLocators() const {
  const std::string folder = configDirectory(Platform::Instance(), APP_NAME).toUTF8();
  const std::string host = m_state->server.url("");
  const auto write = [&folder](const String& name, const std::string& text) {
    std::ofstream(folder + name.toUTF8(), std::ios::binary) << text;
  };
  write(CURRENT_PRICE_LOCATORS_FILE, quoteDocument(host));
  write(CODE_SEARCH_LOCATORS_FILE, searchDocument(host));
  write(HISTORICAL_PRICE_LOCATORS_FILE, historyDocument(host, m_state->maxEntries));
}

TestHttpServer& MarketFixture::server() {
  return m_state->server;
}

} // namespace Tallymoor
