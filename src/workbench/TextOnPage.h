#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class HTMLTag;

/// The tags of a page that contain a text, in page order. Compares texts as a browser shows them.
struct TextOnPage {
  std::vector<const HTMLTag*> whole; ///< Tags with exactly this text.
  std::vector<const HTMLTag*> part;  ///< Tags with this text and more.

  TextOnPage(const HTMLTag& start, const String& text);

  /// Explains why no walk can reach a text that is in no tag.
  static String whyNotInTags(const String& page, const String& text);
};

} // namespace Tallymoor
