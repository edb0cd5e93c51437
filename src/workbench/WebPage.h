#pragma once
#include "foundation/String.h"
#include "pages/HTMLParser.h"
#include <string>

namespace Tallymoor {

class HTTPClient;
class PlainOutput;
class URL;

/// A web page that a command looks at, read exactly as the program reads the pages it fetches. Failures are
/// WorkbenchFailure.
class WebPage {
public:
  /// A page that was saved. What is larger than the program would fetch is refused.
  static WebPage fromFile(const std::string& path);
  /// A page from the web. The client is put online.
  static WebPage fetched(HTTPClient& client, const URL& address);

  const String& text() const { return m_text; }
  const HTMLTag* root() const { return m_tags.get(); }
  /// How to speak of it: the file's name, or "the page".
  const String& name() const { return m_name; }
  /// Keeps the page in a new file; throws also when there is one of that name.
  void save(const std::string& path) const;
  /// A line of what was read, and what is odd about the page as a whole.
  void show(PlainOutput& out) const;

private:
  WebPage(const String& name, const String& text, bool cutAtZero);

  String m_name;
  String m_text;
  bool m_cutAtZero; ///< the bytes go on behind a zero byte, the text doesn't
  HTMLPage m_tags;
};

/// The bytes of a file that is no larger than a page may be. Throws WorkbenchFailure.
std::string readWholeFile(const std::string& path);

} // namespace Tallymoor
