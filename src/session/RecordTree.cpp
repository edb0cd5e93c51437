#include "session/RecordTree.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>

namespace Tallymoor {

namespace {

struct DatedText {
  std::string text;
  Date earliest;

  bool operator<(const DatedText& other) const { return text < other.text; }
};

/// Collects the events of a portfolio that its capital record depends on.
class Events {
public:
  explicit Events(XMLSharePortfolio& portfolio) {
    for (XMLHeldShare& share : portfolio.heldShares())
      addAll("held " + share.code().toUTF8(), share.parcels());
    for (XMLSoldShare& share : portfolio.soldShares())
      addAll("sold " + share.code().toUTF8(), share.sales());
    addAll("dividend", portfolio.dividends());
    addAll("cash", portfolio.cashEvents());
    std::sort(m_events.begin(), m_events.end());
  }

  /// The first day of all events that stand on one side only.
  std::optional<Date> firstDifference(const Events& other) const {
    std::vector<DatedText> different;
    std::set_symmetric_difference(m_events.begin(), m_events.end(), other.m_events.begin(),
                                  other.m_events.end(), std::back_inserter(different));
    const auto first =
        std::min_element(different.begin(), different.end(),
                         [](const DatedText& a, const DatedText& b) { return a.earliest < b.earliest; });
    return first == different.end() ? std::nullopt : std::optional(first->earliest);
  }

private:
  template <class Event>
  void addAll(const std::string& kind, const ElementList<Event>& events) {
    for (Event& event : events) {
      m_stream.str(std::string());
      event.encode(m_stream);
      m_events.push_back({kind + m_stream.str(), earliestOf(event)});
    }
  }

  static Date earliestOf(XMLEvent& event) {
    Date earliest = event.day();
    for (const XMLDate* date : event.dates())
      earliest = std::min(earliest, date->date());
    return earliest;
  }

  std::ostringstream m_stream;
  std::vector<DatedText> m_events;
};

/// The portfolio of a text, in records of its own.
std::unique_ptr<XMLPortfolios> decoded(const std::string& text) {
  auto records = std::make_unique<XMLPortfolios>();
  records->decode(("<Portfolios>" + text + "</Portfolios>").c_str());
  if (records->portfolios().size() != 1)
    throw Exception(u"The journal holds no portfolio where one should be.");
  return records;
}

} // namespace

void replaceRecords(SharePortfolioUser& portfolio, const std::string& text) {
  const auto fresh = decoded(text);
  XMLSharePortfolio& wanted = fresh->portfolios()[0];
  if (wanted.portfolioName() != portfolio.name())
    throw Exception(u"The journal holds the portfolio " + wanted.portfolioName() + u" where " +
                    portfolio.name() + u" should be.");
  const std::optional<Date> from = Events(portfolio.portfolio()).firstDifference(Events(wanted));
  if (wanted.comparisonIndex() != portfolio.comparisonIndex())
    portfolio.setComparisonIndex(wanted.comparisonIndex()); // drops the averages of the other one
  static_cast<XMLElement&>(portfolio.portfolio()) = wanted;
  if (from)
    portfolio.capitalRecord().recordsChangedFrom(*from);
}

void openFromText(OpenPortfolios& open, XMLPortfolios& records, const std::string& text,
                  std::uint32_t place) {
  const auto fresh = decoded(text);
  std::unique_ptr<XMLElement> portfolio(
      fresh->portfolios()[0].clone([]() -> XMLElement* { return new XMLSharePortfolio; }));
  addPortfolio(open, records, std::move(portfolio));
  if (place < records.portfolios().size())
    records.portfolios().moveLastTo(place);
}

} // namespace Tallymoor
