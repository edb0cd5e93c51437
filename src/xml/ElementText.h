#pragma once
#include "foundation/String.h"
#include "foundation/TextFingerprint.h"
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

class XMLElement;

/// The text of an element as `encode` writes it, for a large one that is written again after each small
/// change: what has not changed since the former text is shared with it, so the time follows the change.
class ElementText {
public:
  /// A place at which two texts differ.
  struct Difference {
    std::size_t place; ///< bytes before it, in the text before
    std::string before;
    std::string after;
  };

  /// Without a former text everything is encoded. Throws as encode.
  explicit ElementText(XMLElement& element, const ElementText* former = nullptr);

  std::string text() const;
  const TextFingerprint& fingerprint() const;

  /// Where the text has become another one, in the order of the places. A difference may hold more than what
  /// differs: it is that of the elements that have changed, or of everything where most has.
  static std::vector<Difference> differences(const ElementText& before, const ElementText& after);

private:
  friend class DocumentText;
  std::shared_ptr<const struct TextPiece> m_piece;
};

/// A document as encodeWithDoctype writes it. It is made in the time of what is not known yet, and any thread
/// may put the text together.
class DocumentText {
public:
  /// Asked for each element right below the root; gives null if its text is not known.
  using Known = std::function<const ElementText*(const XMLElement&)>;

  DocumentText() = default;
  /// Throws as encode.
  DocumentText(XMLElement& root, const String& dtdName, const Known& known);

  std::string text() const;

private:
  std::string m_head;
  std::vector<ElementText> m_below;
  std::string m_tail;
};

} // namespace Tallymoor
