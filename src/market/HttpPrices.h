#pragma once
#include "market/PriceProvider.h"
#include "market/PriceSource.h"
#include <memory>
#include <string>

namespace Tallymoor {

class HTTPClient;

/// The source that a document describes, asked over HTTP.
///
/// Every failure is a SourceException whose message holds the source's own words where it told any, and
/// "(key)" wherever the user's key stood.
class HttpPrices : public PriceProvider {
public:
  HttpPrices(std::shared_ptr<HTTPClient> client, std::shared_ptr<const PriceSource> source, String key);

  const String& name() const override { return m_source->name(); }
  bool serves(const String& code) const override { return m_source->serves(code); }
  bool offersHistory() const override { return m_source->history() != nullptr; }
  bool offersSearch() const override { return m_source->search() != nullptr; }
  std::size_t requestsADay() const override { return m_source->limits().perDay; }

  /// Of a source that offers past prices alone, the last of these.
  std::optional<AnsweredPrice> currentPrice(const String& code, const std::stop_token& stop) const override;
  AnsweredHistory history(const String& code, const HistoryRange& range,
                          const std::stop_token& stop) const override;
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop) const override;

private:
  std::string answerTo(const SourceRequest& request, AddressValues values, const std::stop_token& stop) const;
  template <class Read>
  auto readAnswer(const SourceRequest& request, const AddressValues& values, const std::stop_token& stop,
                  Read read) const;
  AnsweredHistory historyPage(const String& code, const HistoryRange& range,
                              const std::stop_token& stop) const;
  template <class Work>
  auto withoutKey(Work work) const;
  String masked(const String& text) const;

  std::shared_ptr<HTTPClient> m_client;
  std::shared_ptr<const PriceSource> m_source;
  String m_key;
};

} // namespace Tallymoor
