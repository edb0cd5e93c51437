#pragma once
#include "xml/LocatorDocuments.h"
#include <vector>

namespace Tallymoor {

class HTMLTag;

/// A walk from a page's root to a tag. Walks are tested before they are proposed.
struct LocatorWay {
  enum class By { Label, Attribute, Position };

  By by;
  XMLTagLocator locator;

  /// All walks found, the one least likely to break first. Empty if there is none.
  static std::vector<LocatorWay> to(const HTMLTag& target, const HTMLTag& root);
  /// The walks that don't start at a label, for a target that is not a single value.
  static std::vector<LocatorWay> withoutLabels(const HTMLTag& target, const HTMLTag& root);

  // --- Building blocks of walks

  static void addSearchByText(XMLTagLocator& locator, const HTMLTag& tag);
  static void addSearchByAttribute(XMLTagLocator& locator, const HTMLTag& tag, const String& attribute);
  /// Adds a move from one sibling to a later one. False if there is none.
  static bool addMoveDown(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to);
  /// Like HTMLTagLocator::fillTagMovesFor. False if `to` is not inside `from`.
  static bool addMovesIn(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to);
};

} // namespace Tallymoor
