#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class HTMLTag;

/// The tags of a page that hold a text, in the order of the page. Texts are compared as a browser shows them.
struct TextOnPage {
  std::vector<const HTMLTag*> whole; ///< whose text it is
  std::vector<const HTMLTag*> part;  ///< whose text it is a part of

  TextOnPage(const HTMLTag& start, const String& text);

  /// Why a text that no tag holds can't be reached by a walk, by the place where it stands on the page.
  static String whyNotInTags(const String& page, const String& text);
};

} // namespace Tallymoor
