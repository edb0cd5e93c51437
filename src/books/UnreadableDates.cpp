#include "books/UnreadableDates.h"
#include "foundation/Date.h"
#include "xml/PortfolioRecords.h"
#include "xml/Utf8Writer.h"
#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <string>

namespace Tallymoor {

namespace {

constexpr std::size_t MOST_TOLD = 10;

/// A damaged file may hold a text of any length where a name or a date should stand.
String asTold(const String& text) {
  constexpr std::size_t MOST_CHARACTERS = 30;
  return text.size() <= MOST_CHARACTERS ? text : text.substr(0, MOST_CHARACTERS) + u"...";
}

class Search {
public:
  std::vector<UnreadableDate> found;
  String portfolio;

  /// One unreadable date of an entry sets all its dates aside: else half a sale would count.
  void look(XMLEvent& event, const String& entry) {
    std::optional<String> bad;
    for (XMLDate* date : event.dates()) {
      date->putBack();
      if (const auto text = date->unreadableText(); text && !bad)
        bad = text;
    }
    if (!bad)
      return;
    for (XMLDate* date : event.dates())
      date->setAside();
    found.push_back({portfolio, entry, *bad});
  }

  /// Those of a list, counted from 1.
  template <class Event>
  void lookAtAll(const ElementList<Event>& events, const String& kind) {
    std::int64_t number = 0;
    for (Event& event : events)
      look(event, kind + u" " + String::fromLong(++number));
  }

  template <class Parcel>
  void lookAtParcels(const ElementList<Parcel>& parcels, const String& code, const String& kind) {
    std::int64_t number = 0;
    for (Parcel& parcel : parcels) {
      const String entry = code + u", " + kind + u" " + String::fromLong(++number);
      look(parcel, entry);
      lookAtAll(parcel.adjustments(), entry + u", split");
    }
  }
};

void searchPortfolio(XMLSharePortfolio& portfolio, Search& search) {
  search.portfolio = portfolio.portfolioName();
  for (XMLHeldShare& stock : portfolio.heldShares())
    search.lookAtParcels(stock.parcels(), stock.code(), u"purchase");
  for (XMLSoldShare& stock : portfolio.soldShares())
    search.lookAtParcels(stock.sales(), stock.code(), u"sale");
  std::int64_t number = 0;
  for (XMLDividendEvent& dividend : portfolio.dividends())
    search.look(dividend, dividend.code() + u", dividend " + String::fromLong(++number));
  search.lookAtAll(portfolio.cashEvents(), u"cash reserve, entry");
}

/// Finds texts of elements or attributes one after the other, each occurrence once.
class LineFinder {
public:
  explicit LineFinder(std::string_view content) : m_content(content) {}

  /// Counted from 1; 0 when the text is not found, or is empty as that of many elements is.
  std::size_t lineOf(const String& text) {
    if (text.empty())
      return 0;
    const std::size_t line = lineOfBytes(text.toUTF8());
    return line > 0 ? line : lineOfBytes(escaped(text));
  }

private:
  static std::string escaped(const String& text) {
    std::ostringstream bytes;
    Utf8Writer writer(bytes);
    writer.escaped(text);
    writer.flush();
    return bytes.str();
  }

  std::size_t lineOfBytes(const std::string& text) {
    std::size_t& from = m_from[text];
    std::size_t place = m_content.find(">" + text + "<", from);
    if (place == std::string_view::npos)
      place = m_content.find("\"" + text + "\"", from);
    if (place == std::string_view::npos)
      return 0;
    from = place + 1;
    return 1 + static_cast<std::size_t>(std::count(
                   m_content.begin(), m_content.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
  }

  std::string_view m_content;
  std::map<std::string, std::size_t> m_from; ///< where the search for each text goes on
};

} // namespace

std::vector<UnreadableDate> setAsideUnreadableDates(XMLPortfolios& records) {
  Search search;
  for (XMLSharePortfolio& portfolio : records.portfolios())
    searchPortfolio(portfolio, search);
  return std::move(search.found);
}

String unreadableDatesText(const std::vector<UnreadableDate>& dates, std::string_view fileContent) {
  if (dates.empty())
    return String();
  LineFinder lines(fileContent);
  String text = u"Your records hold dates that can't be read:\n";
  for (std::size_t i = 0; i < std::min(dates.size(), MOST_TOLD); ++i) {
    const std::size_t line = lines.lineOf(dates[i].text);
    text +=
        asTold(dates[i].portfolio) + u", " + asTold(dates[i].entry) + u": \"" + asTold(dates[i].text) + u"\"";
    if (line > 0)
      text = text + u" (line " + String::fromLong(static_cast<std::int64_t>(line)) + u" of the file)";
    text = text + u"\n";
  }
  if (dates.size() > MOST_TOLD)
    text =
        text + u"and " + String::fromLong(static_cast<std::int64_t>(dates.size() - MOST_TOLD)) + u" more.\n";
  return text + u"These entries are shown on the day " + XMLDate::farOff().toString(DATE_DISPLAY_LOCAL) +
         u" and left out of all figures\nuntil you put their dates right in the table. All else is computed "
         u"as ever.";
}

} // namespace Tallymoor
