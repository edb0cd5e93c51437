#pragma once
#include "xml/LocatorDocuments.h"
#include <vector>

namespace Tallymoor {

class HTMLTag;

/// A walk that leads from a page's root to a tag, tried before it is proposed.
struct LocatorWay {
  enum class By { Label, Attribute, Position };

  By by;
  XMLTagLocator locator;

  /// The ways to a tag, the one first that is likely to go on leading there when the page changes. None where
  /// no walk leads to the tag.
  static std::vector<LocatorWay> to(const HTMLTag& target, const HTMLTag& root);
  /// Those that don't go by a label: for what is no single value.
  static std::vector<LocatorWay> withoutLabels(const HTMLTag& target, const HTMLTag& root);

  // --- For building walks

  static void addSearchByText(XMLTagLocator& locator, const HTMLTag& tag);
  static void addSearchByAttribute(XMLTagLocator& locator, const HTMLTag& tag, const String& attribute);
  /// A move along the siblings from one tag to another behind it. False where none leads there.
  static bool addMoveDown(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to);
  /// As HTMLTagLocator::fillTagMovesFor; false where there is no way down.
  static bool addMovesIn(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to);
};

} // namespace Tallymoor
