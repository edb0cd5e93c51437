#include "engine/UnreadableDates.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "xml/Leaves.h"
#include "xml/Utf8Writer.h"
#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <string>

namespace Tallymoor {

namespace {

const String UNREADABLE = u"Unreadable";
const String FAR_OFF = u"1/1/9999";
constexpr std::size_t MOST_TOLD = 10;

bool isDate(const String& text) {
  try {
    Date(text, DATE_DISPLAY_DMY);
    return true;
  } catch (const Exception&) {
    return false;
  }
}

/// A damaged file may hold a text of any length where a name or a date should stand.
String asTold(const String& text) {
  constexpr std::size_t MOST_CHARACTERS = 30;
  return text.size() <= MOST_CHARACTERS ? text : text.substr(0, MOST_CHARACTERS) + u"...";
}

void setAside(XMLElement& date) {
  if (date.hasAttribute(UNREADABLE))
    return;
  date.setAttribute(UNREADABLE, date.value());
  date.setValue(FAR_OFF);
}

/// A date that was set aside in an earlier run and may count again.
void putBack(XMLElement& date) {
  if (!date.hasAttribute(UNREADABLE))
    return;
  const String kept = date.attribute(UNREADABLE);
  const bool wasPutRight = !(date.value() == FAR_OFF);
  if (!wasPutRight && !isDate(kept))
    return;
  if (!wasPutRight)
    date.setValue(kept);
  date.removeAttribute(UNREADABLE);
}

class Search {
public:
  std::vector<UnreadableDate> found;
  String portfolio;

  /// The dates of an entry, of which one that can't be read puts all of them aside: half a sale would count.
  void look(XMLElement& event, std::initializer_list<std::u16string_view> names, const String& entry) {
    std::optional<String> bad;
    for (const std::u16string_view name : names)
      if (const auto text = badTextOf(event.subElement(name)); text && !bad)
        bad = text;
    if (!bad)
      return;
    for (const std::u16string_view name : names)
      setAside(event.subElement(name));
    found.push_back({portfolio, entry, *bad});
  }

  void lookAtStocks(XMLElement& stocks, std::u16string_view reference, std::u16string_view events,
                    std::initializer_list<std::u16string_view> names, const String& kind) {
    for (std::size_t i = 0; i < stocks.numSubElements(reference); ++i) {
      XMLElement& stock = stocks.subElement(reference, i);
      for (std::size_t j = 0; j < stock.numSubElements(events); ++j) {
        XMLElement& event = stock.subElement(events, j);
        const String entry = textValue(stock, u"Code") + numbered(kind, j);
        look(event, names, entry);
        for (std::size_t k = 0; k < event.numSubElements(u"Adjustments"); ++k)
          look(event.subElement(u"Adjustments", k), {u"StartDate"}, entry + numbered(u"split", k));
      }
    }
  }

  static String numbered(const String& kind, std::size_t place) {
    return u", " + kind + u" " + String::fromLong(static_cast<std::int64_t>(place) + 1);
  }

private:
  static std::optional<String> badTextOf(XMLElement& date) {
    putBack(date);
    if (date.hasAttribute(UNREADABLE))
      return date.attribute(UNREADABLE);
    return isDate(date.value()) ? std::nullopt : std::optional(date.value());
  }
};

void searchPortfolio(XMLElement& portfolio, Search& search) {
  search.portfolio = textValue(portfolio, u"Name");
  search.lookAtStocks(portfolio.subElement(u"HeldShares"), u"HeldShares", u"BuyEvents", {u"BuyDate"},
                      u"purchase");
  search.lookAtStocks(portfolio.subElement(u"SoldShares"), u"SoldShares", u"SellEvents",
                      {u"BuyDate", u"SellDate"}, u"sale");
  XMLElement& dividends = portfolio.subElement(u"Dividends");
  for (std::size_t i = 0; i < dividends.numSubElements(u"DividendEvents"); ++i) {
    XMLElement& event = dividends.subElement(u"DividendEvents", i);
    search.look(event, {u"ReceiveDate"}, textValue(event, u"Code") + Search::numbered(u"dividend", i));
  }
  XMLElement& reserve = portfolio.subElement(u"CashReserve");
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i)
    search.look(reserve.subElement(u"CashEvents", i), {u"Date"},
                u"cash reserve" + Search::numbered(u"entry", i));
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

std::vector<UnreadableDate> setAsideUnreadableDates(XMLElement& records) {
  Search search;
  for (std::size_t i = 0; i < records.numSubElements(u"SharePortfolios"); ++i)
    searchPortfolio(records.subElement(u"SharePortfolios", i), search);
  return std::move(search.found);
}

bool isSetAside(const XMLElement& event, std::u16string_view date) {
  const XMLElement& element = event.subElement(date);
  return element.hasAttribute(UNREADABLE) && element.value() == FAR_OFF;
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
  return text + u"These entries are shown on the day " +
         Date(FAR_OFF, DATE_DISPLAY_DMY).toString(DATE_DISPLAY_LOCAL) +
         u" and left out of all figures\nuntil you put their dates right in the table. All else is computed "
         u"as ever.";
}

} // namespace Tallymoor
