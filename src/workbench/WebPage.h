#pragma once
#include "foundation/String.h"
#include "pages/HTMLParser.h"
#include <string>
#include <string_view>

namespace Tallymoor {

class HTTPClient;
class HTTPException;
class PlainOutput;
class URL;

/// A web page, parsed exactly as the program parses fetched pages. Failures throw WorkbenchFailure.
class WebPage {
public:
  /// Reads a saved page. Rejects a page larger than the program would fetch.
  static WebPage fromFile(const std::string& path);
  /// Fetches a page and puts the client online.
  static WebPage fetched(HTTPClient& client, const URL& address);

  const String& text() const { return m_text; }
  const HTMLTag* root() const { return m_tags.get(); }
  /// The page's name in messages: the file's name or "the page".
  const String& name() const { return m_name; }
  /// Saves the page as a new file. Throws if the file exists.
  void save(const std::string& path) const;
  /// Shows a line about the page, and what is unusual about it.
  void show(PlainOutput& out) const;

private:
  WebPage(const String& name, const String& text, bool cutAtZero);

  String m_name;
  String m_text;
  bool m_cutAtZero; ///< True if a zero byte ends the text before the end of the bytes.
  HTMLPage m_tags;
};

/// Saves bytes as a new file. Throws WorkbenchFailure, also if the file exists.
void writeNewFile(const std::string& path, std::string_view bytes);

/// Why an address could not be fetched, for the user.
String fetchFailure(const HTTPException& failure);

/// Throws WorkbenchFailure for an address that is neither http nor https.
void checkScheme(const URL& address);

/// Reads a file up to the maximum size of a page. Throws WorkbenchFailure.
std::string readWholeFile(const std::string& path);

} // namespace Tallymoor
