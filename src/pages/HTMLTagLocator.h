#pragma once
#include <cstddef>

namespace Tallymoor {

class HTMLTag;
class HTMLWalkLimit;
class String;
class XMLElement;
class XMLTagLocator;

/// Walks from one tag of a page to another by the steps of a locator document.
class HTMLTagLocator {
public:
  /// The element is not owned. Throws HTMLException "HTMLTagLocator::HTMLTagLocator - bad param" for null.
  explicit HTMLTagLocator(const XMLTagLocator* locator);
  /// The same for an element reached by reference name; also throws when it is no tag locator.
  explicit HTMLTagLocator(const XMLElement* locator);

  /// The tag at the end of the walk, never null. A step that doesn't fit the page throws HTMLException. The
  /// tags looked at are taken off the limit, if one is given.
  const HTMLTag* operator()(const HTMLTag* root, HTMLWalkLimit* limit = nullptr) const;

  /// One step of a walk, which a "TagFind" element tells, from the current tag. Same failures and limit.
  static const HTMLTag* applyStep(const XMLElement& tagFind, const HTMLTag* current,
                                  HTMLWalkLimit* limit = nullptr);

  /// Adds the steps that lead from start down to target to the locator's TagFinds. A tool for writing locator
  /// documents. Throws HTMLException when the target isn't found under its parent.
  static void fillTagMovesFor(XMLTagLocator& locator, const HTMLTag* start, const HTMLTag* target);
  /// The position of a tag among the like-named sub tags of parent, from 0. Throws HTMLException when it
  /// isn't there.
  static std::size_t indexUnder(const HTMLTag* parent, const HTMLTag* tag);

private:
  static const HTMLTag* applyMove(const XMLElement& move, const HTMLTag* current, HTMLWalkLimit* limit);
  static const HTMLTag* applySearch(const XMLElement& search, const HTMLTag* current, HTMLWalkLimit* limit);

  const XMLElement* m_locator;
};

} // namespace Tallymoor
