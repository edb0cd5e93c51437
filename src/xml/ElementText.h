#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tallymoor {

class XMLElement;

/// What ElementText knows of the elements two levels below its own: where their text stands.
class WrittenPieces {
public:
  /// The text of an element that has not changed since the former text; empty for any other. To be asked in
  /// the order of the elements.
  std::string_view formerTextOf(const XMLElement& element);
  void add(const XMLElement& element, std::size_t place, std::size_t length);

private:
  friend class ElementText;
  struct Piece {
    const XMLElement* element; ///< only compared
    std::uint64_t stamp;
    std::size_t place;
    std::size_t length;
  };

  std::string_view m_formerText;
  std::vector<Piece> m_former;
  std::size_t m_next = 0; ///< of the former ones: the first that was not met yet
  std::vector<Piece> m_pieces;
};

/// The text of an element as `encode` writes it, for a large one that is written again after each small
/// change: what lies two levels below it is encoded again only if it has changed since the former text.
class ElementText {
public:
  /// Without a former text everything is encoded. Throws as encode.
  explicit ElementText(XMLElement& element, const ElementText* former = nullptr);

  const std::string& text() const { return m_text; }

private:
  std::string m_text;
  std::vector<WrittenPieces::Piece> m_pieces;
};

} // namespace Tallymoor
