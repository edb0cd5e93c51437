#pragma once
#include "foundation/TextFingerprint.h"
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

class XMLElement;
struct TextPiece;

/// An element and its text, as long as its stamp is the same.
struct WrittenElement {
  const XMLElement* element; ///< only compared
  std::uint64_t stamp;
  std::shared_ptr<const TextPiece> piece;
};

/// Some elements that follow each other: long lists are compared and kept by groups.
struct WrittenGroup {
  std::vector<WrittenElement> elements;
  TextFingerprint fingerprint; ///< of all texts
};

/// The text of an element. That of a large one is in parts.
struct TextPiece {
  bool isSplit() const { return !groups.empty(); }
  void appendTo(std::string& text) const;
  std::string text() const;

  std::string head; ///< up to the first sub-element, or all of it
  std::vector<std::shared_ptr<const WrittenGroup>> groups;
  std::string tail; ///< behind the last one
  TextFingerprint fingerprint;
};

/// The text of the element. What has not changed since the former one, if any, is shared with it.
std::shared_ptr<const TextPiece> pieceOf(XMLElement& element, const TextPiece* former);

} // namespace Tallymoor
