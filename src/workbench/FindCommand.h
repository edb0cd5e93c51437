#pragma once
#include "foundation/String.h"
#include <string>

namespace Tallymoor {

class HTMLTag;
class PlainOutput;
class WebPage;

/// Lists the tags of a page that contain a text and proposes walks to them.
class FindCommand {
public:
  FindCommand(PlainOutput& out, const std::string& page, const String& text)
      : m_out(out), m_page(page), m_text(text) {}

  /// True if a walk leads to at least one of the tags. Throws WorkbenchFailure.
  bool run();

private:
  bool showTag(const WebPage& page, const HTMLTag& tag, std::size_t number);

  PlainOutput& m_out;
  const std::string m_page;
  const String m_text;
};

} // namespace Tallymoor
