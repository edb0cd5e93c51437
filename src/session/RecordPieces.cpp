#include "session/RecordPieces.h"
#include <algorithm>
#include <array>

namespace Tallymoor {

namespace {

constexpr std::array<std::string_view, 4> EVENTS{"BuyEvent", "SellEvent", "DividendEvent", "CashEvent"};
constexpr std::array<std::string_view, 2> STOCKS{"HeldShare", "SoldShare"};

/// The name of the start tag that the text begins with.
std::string_view nameAtStart(std::string_view text) {
  const std::size_t end = std::min(text.find_first_of(" />", 1), text.size());
  return end < 2 ? std::string_view() : text.substr(1, end - 1);
}

template <std::size_t COUNT>
bool isOneOf(const std::array<std::string_view, COUNT>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Behind the end tag; the end of the text if there is none.
std::size_t endOf(std::string_view text, std::string_view name, std::size_t from) {
  std::string tag = "</";
  tag += name;
  tag += '>';
  const std::size_t place = text.find(tag, from);
  return place == std::string_view::npos ? text.size() : place + tag.size();
}

/// The first string of a stock or a dividend is its code.
String codeOf(std::string_view text) {
  constexpr std::string_view START = "<String>";
  const std::size_t place = text.find(START);
  const std::size_t end = text.find("</String>");
  if (place == std::string_view::npos || end == std::string_view::npos || end < place)
    return String();
  return String::fromUTF8(text.substr(place + START.size(), end - place - START.size()));
}

class Cutting {
public:
  explicit Cutting(std::string_view text) : m_text(text) {}

  std::vector<RecordPiece> pieces() {
    const std::string rest = cut(0, m_text.size(), String());
    m_pieces.push_back({"SharePortfolio", String(), rest});
    return std::move(m_pieces);
  }

private:
  /// Adds the pieces of a stretch of the text, and gives what is left of it.
  std::string cut(std::size_t from, std::size_t to, const String& code) {
    std::string rest;
    while (from < to) {
      const std::size_t tag = std::min(m_text.find('<', from), to);
      rest.append(m_text, from, tag - from);
      if (tag == to)
        break;
      from = std::min(to, addAt(tag, code, rest));
    }
    return rest;
  }

  /// Where to go on behind the tag at a place.
  std::size_t addAt(std::size_t place, const String& code, std::string& rest) {
    const std::string_view text = m_text.substr(place);
    std::size_t end = 0;
    if (text.starts_with("<!--")) {
      end = text.find("-->");
      end = end == std::string_view::npos ? text.size() : end + 3;
    } else if (const std::string_view name = nameAtStart(text); isOneOf(EVENTS, name)) {
      end = endOf(text, name, 0);
      const std::string_view event = text.substr(0, end);
      m_pieces.push_back({name, name == "DividendEvent" ? codeOf(event) : code, std::string(event)});
      return place + end;
    } else if (isOneOf(STOCKS, name)) {
      end = endOf(text, name, 0);
      const std::string_view stock = text.substr(0, end);
      const String stockCode = codeOf(stock);
      // Behind its start tag, so that it is not met again.
      std::string piece = "<";
      piece += name;
      piece += cut(place + 1 + name.size(), place + end, stockCode);
      m_pieces.push_back({name, stockCode, std::move(piece)});
      return place + end;
    } else
      end = 1;
    rest.append(m_text, place, end);
    return place + end;
  }

  std::string_view m_text;
  std::vector<RecordPiece> m_pieces;
};

} // namespace

std::vector<RecordPiece> piecesOf(std::string_view portfolio) {
  return portfolio.empty() ? std::vector<RecordPiece>() : Cutting(portfolio).pieces();
}

} // namespace Tallymoor
