#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

class TestHttpServer;

/// A small simulated stock exchange behind a real web server on the loopback interface. During its lifetime
/// the locator documents in the test profile's Config folder lead to it, so create it after the TestProfile
/// and before the first use of the gateway. Prices may be changed at any time, even while the gateway's
/// thread fetches.
///
/// It contains only what the test sets. A code without a current price or without any history gets a page
/// that the locator does not match (HTMLException). A code with history, but none in the requested range,
/// gets a table without rows.
class MarketFixture {
public:
  enum class Page { Quote, History, Search };

  MarketFixture();
  ~MarketFixture();
  MarketFixture(const MarketFixture&) = delete;
  MarketFixture& operator=(const MarketFixture&) = delete;

  void setCurrentPrice(const String& code, double price);
  /// Sets a trading day. High and low are the close plus and minus 0.5.
  void setDay(const String& code, const Date& day, double close, int volume = 1000);
  void setDay(const String& code, const Date& day, double close, double high, double low, int volume);
  /// Sets every weekday from first to last, with closes from a function of the day.
  void setHistory(const String& code, const Date& first, const Date& last,
                  const std::function<double(const Date&)>& close);
  /// Sets the same close for every weekday from first to last.
  void setHistory(const String& code, const Date& first, const Date& last, double close);
  /// Adds a stock that the search finds by any part of its code or name, in any case.
  void addListing(const String& code, const String& name, const String& market);

  /// Refuses such requests with this HTTP status from now on; 200 ends it.
  void refuse(Page page, int status);
  /// Answers such requests with this text from now on; an empty text ends it.
  void answerWith(Page page, const std::string& html);
  /// Makes such requests wait from now on, until release is called or the client disconnects.
  void stall(Page page);
  void release(Page page);
  /// Waits until this number of requests of the kind has arrived since the beginning.
  void awaitRequests(Page page, std::size_t count);

  /// The requested codes or search texts, in order of arrival.
  std::vector<String> requested(Page page) const;
  /// The date ranges of the history requests, in the same order.
  struct Range {
    Date start;
    Date end;
  };
  std::vector<Range> requestedRanges() const;

  /// Sets the number of days per history page (initially 200) and rewrites the locator documents.
  void setMaxEntries(int entries);
  /// Writes the three locator documents into the profile's Config folder.
  void writeLocators() const;

  TestHttpServer& server();

private:
  class State;
  std::unique_ptr<State> m_state;
};

} // namespace Tallymoor
