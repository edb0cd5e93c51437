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

/// A small stock exchange of a test's own making, behind a real web server on the loopback interface. While
/// it lives, the locator documents in the test profile's Config folder lead to it, so make it after the
/// TestProfile and before the first use of the gateway. Prices may be changed at any time, also while the
/// gateway's thread fetches.
///
/// It trades what the test says and nothing else: a code without a current price gets a page that the locator
/// does not fit (HTMLException), a code without any history likewise. A code with history, but with none in
/// the range asked for, gets a table without rows.
class MarketFixture {
public:
  enum class Page { Quote, History, Search };

  MarketFixture();
  ~MarketFixture();
  MarketFixture(const MarketFixture&) = delete;
  MarketFixture& operator=(const MarketFixture&) = delete;

  void setCurrentPrice(const String& code, double price);
  /// A trading day; high and low are the close plus and minus 0.5.
  void setDay(const String& code, const Date& day, double close, int volume = 1000);
  void setDay(const String& code, const Date& day, double close, double high, double low, int volume);
  /// Every day from the first to the last, weekends left out, by a function of the day.
  void setHistory(const String& code, const Date& first, const Date& last,
                  const std::function<double(const Date&)>& close);
  /// The same with one close for all days.
  void setHistory(const String& code, const Date& first, const Date& last, double close);
  /// A stock that the search finds by any part of its code or name, whatever the case.
  void addListing(const String& code, const String& name, const String& market);

  /// From now on every such request is refused with this HTTP status; 200 ends it.
  void refuse(Page page, int status);
  /// From now on every such request gets this text instead of a page of the exchange; an empty text ends it.
  void answerWith(Page page, const std::string& html);
  /// From now on every such request waits until release is called or the client goes away.
  void stall(Page page);
  void release(Page page);
  /// Returns when so many requests of the kind, counted from the beginning, have come in.
  void awaitRequests(Page page, std::size_t count);

  /// The codes, or texts of searches, that were asked for, in the order of coming in.
  std::vector<String> requested(Page page) const;
  /// The ranges of the requests for histories, in the same order.
  struct Range {
    Date start;
    Date end;
  };
  std::vector<Range> requestedRanges() const;

  /// Days that one page of history is said to hold; 200 at first. Writes the locator documents again.
  void setMaxEntries(int entries);
  /// Writes the three locator documents into the profile's Config folder.
  void writeLocators() const;

  TestHttpServer& server();

private:
  class State;
  std::unique_ptr<State> m_state;
};

} // namespace Tallymoor
