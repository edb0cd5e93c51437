#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class HTMLTag;
class PlainOutput;
class XMLElement;

/// Shows how a walk of a locator document goes on a page: each step with the tag that it reaches, and at a
/// step that fails what stands there instead.
class WalkTrace {
public:
  /// The locator and the page are not owned and must outlive this.
  WalkTrace(const XMLElement& tagLocator, const HTMLTag& start) : m_locator(tagLocator), m_start(start) {}

  /// The tag reached, or null after showing where the walk stopped.
  const HTMLTag* show(PlainOutput& out, unsigned level) const;
  /// The steps alone, on one line.
  String steps() const;

private:
  static void showStop(PlainOutput& out, const XMLElement& tagFind, const HTMLTag& current, unsigned level);

  const XMLElement& m_locator;
  const HTMLTag& m_start;
};

} // namespace Tallymoor
