#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class HTMLTag;
class PlainOutput;
class XMLElement;

/// Shows the steps of a locator's walk on a page with the tag that each reaches. For a failing step it shows
/// the tags that are there instead.
class WalkTrace {
public:
  /// The locator and the page are not owned and must outlive this object.
  WalkTrace(const XMLElement& tagLocator, const HTMLTag& start) : m_locator(tagLocator), m_start(start) {}

  /// The tag reached; null if a step failed.
  const HTMLTag* show(PlainOutput& out, unsigned level) const;
  /// The steps alone, on one line.
  String steps() const;

private:
  static void showStop(PlainOutput& out, const XMLElement& tagFind, const HTMLTag& current, unsigned level);

  const XMLElement& m_locator;
  const HTMLTag& m_start;
};

} // namespace Tallymoor
