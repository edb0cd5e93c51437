#include "market/HttpPrices.h"
#include "foundation/Exception.h"
#include "market/AnswerText.h"
#include "market/HTTPClient.h"
#include "market/HostQueues.h"
#include "market/KeyMask.h"
#include "market/LastPrice.h"
#include "market/PagedHistory.h"
#include "market/SourceFailure.h"
#include "market/TransferFailure.h"
#include "market/URL.h"
#include "pages/JsonTable.h"
#include <utility>

namespace Tallymoor {

namespace {

constexpr unsigned STATUS_OK = 200;

std::string textOf(const HTTPAnswer& answer) {
  return utf8Of({reinterpret_cast<const char*>(answer.body.data()), answer.body.size()},
                encodingIn(answer.header("Content-Type")));
}

/// With the source's own words where the answer holds them.
[[noreturn]] void failByStatus(const HTTPAnswer& answer, const AnswerFormat& format) {
  const String words = errorInJson(textOf(answer), format.errorPaths);
  const HTTPException failure(u"status " + String::fromLong(answer.status) +
                                  (words.empty() ? String() : u": " + words),
                              answer.status);
  throw SourceException(faultOf(failure), failure.message());
}

String reasonOf(const Exception& failure) {
  const auto* const transfer = dynamic_cast<const TransferFailure*>(&failure);
  return transfer ? transfer->reason() : failure.message();
}

/// Adds what is new. True if anything was.
bool addPage(AnsweredHistory& whole, AnsweredHistory page) {
  const std::size_t before = whole.prices.size();
  whole.add(std::move(page));
  return whole.prices.size() > before;
}

} // namespace

HttpPrices::HttpPrices(std::shared_ptr<HTTPClient> client, std::shared_ptr<const PriceSource> source,
                       String key)
    : m_client(std::move(client)), m_source(std::move(source)), m_key(std::move(key)) {}

String HttpPrices::masked(const String& text) const {
  std::string shown = text.toUTF8();
  maskKey(shown, m_key);
  return String::fromUTF8(shown);
}

template <class Work>
auto HttpPrices::withoutKey(Work work) const {
  try {
    return work();
  } catch (const Exception& failure) {
    // Cut last: a part of a key would not be found.
    throw SourceException(faultOf(failure), shortened(masked(reasonOf(failure))));
  }
}

std::string HttpPrices::answerTo(const SourceRequest& request, AddressValues values,
                                 const std::stop_token& stop) const {
  if (m_key.empty() && m_source->needsKey())
    throw SourceException(SourceFault::Refused, u"it needs a key, which you get from the source");
  values.key = m_key;
  HTTPHeaders headers;
  for (const auto& [name, value] : request.headers)
    headers.emplace_back(name.toUTF8(), value.fillPlainly(values).toUTF8());
  const URL url(request.address.fill(values));
  const SourceLimits& limits = m_source->limits();
  HostQueues::ofProgram()->setLimits(HostQueues::hostOf(url), {limits.atOnce, limits.perMinute});
  const HTTPAnswer answer = m_client->get(url, headers, stop);
  if (answer.status != STATUS_OK)
    failByStatus(answer, request.format);
  return textOf(answer);
}

template <class Read>
auto HttpPrices::readAnswer(const SourceRequest& request, const AddressValues& values,
                            const std::stop_token& stop, Read read) const {
  const std::string answer = answerTo(request, values, stop);
  try {
    return read(answer, request.format);
  } catch (const AnswerException& failure) {
    if (errorInJson(answer, request.wrongCodePaths).empty())
      throw;
    throw SourceException(SourceFault::WrongCode, failure.message());
  }
}

std::optional<AnsweredPrice> HttpPrices::currentPrice(const String& code, const std::stop_token& stop) const {
  if (m_source->currentPrice() == nullptr)
    return lastPrice(history(code, recentDays(), stop));
  return withoutKey([&] {
    AddressValues values;
    values.code = code;
    const SourceRequest& request = *m_source->currentPrice();
    std::optional<AnsweredPrice> price = readAnswer(request, values, stop, readPrice);
    if (price && price->currency.empty())
      price->currency = m_source->currencyOf(code);
    return price;
  });
}

AnsweredHistory HttpPrices::history(const String& code, const HistoryRange& range,
                                    const std::stop_token& stop) const {
  return withoutKey([&] {
    const SourceRequest& request = *m_source->history();
    const bool isDivided = request.address.usesRange();
    AnsweredHistory history =
        pagedHistory(range, isDivided ? static_cast<int>(request.daysAPage) : 0,
                     [&](const HistoryRange& days) { return historyPage(code, days, stop); });
    dropAfter(history, range.end);
    if (history.currency.empty())
      history.currency = m_source->currencyOf(code);
    return history;
  });
}

/// The numbered pages of a range, where the source has such, up to one that brings nothing new.
AnsweredHistory HttpPrices::historyPage(const String& code, const HistoryRange& range,
                                        const std::stop_token& stop) const {
  constexpr std::size_t MOST_PAGES = 50;
  const SourceRequest& request = *m_source->history();
  AddressValues values;
  values.code = code;
  values.first = range.start;
  values.last = range.end;
  AnsweredHistory whole;
  for (; values.page <= MOST_PAGES; ++values.page)
    if (!addPage(whole, readAnswer(request, values, stop, readHistory)) || !request.address.usesPage())
      break;
  return whole;
}

void HttpPrices::search(const String& text, bool, bool, std::vector<CodeSearchResult>& results,
                        const std::stop_token& stop) const {
  withoutKey([&] {
    AddressValues values;
    values.text = text;
    const SourceRequest& request = *m_source->search();
    for (CodeSearchResult& found : readAnswer(request, values, stop, readSearch))
      results.push_back(std::move(found));
  });
}

} // namespace Tallymoor
