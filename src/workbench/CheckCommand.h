#pragma once
#include "foundation/String.h"
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

class HTTPClient;
class LocatorDocument;
class PlainOutput;
class URL;
class WebPage;
class XMLElement;
class XMLTagLocator;

/// Tries a locator document on a page and shows what the program would read.
class CheckCommand {
public:
  struct Options {
    std::string document;
    std::vector<std::string> pages; ///< Saved pages; a search over several pages needs several.
    std::optional<String> code;     ///< A code or text for which to fetch the page.
    std::string saveTo;             ///< File for the fetched page; empty to keep none.
    String domain;                  ///< The source to check; empty for the active one.
    bool allRows = false;
    // Of a price source alone.
    std::string part; ///< "current", "history" or "search"; empty for the first that it has
    String key;       ///< the user's, for the address
  };
  using ClientFactory = std::function<std::unique_ptr<HTTPClient>()>;

  CheckCommand(PlainOutput& out, Options options, ClientFactory makeClient);
  ~CheckCommand();

  /// True if the program could read what it needs from the pages, or, without a page, if the document is
  /// valid. Throws WorkbenchFailure.
  bool run();

private:
  bool checkPrice(const XMLElement& source);
  bool checkHistory(const XMLElement& source);
  bool checkSearch(const XMLElement& source);
  /// The page for a locator, from the options. Null if they name none.
  std::unique_ptr<WebPage> pageFor(const XMLElement& part, std::size_t number);
  URL address(const XMLElement& part) const;
  bool showPrice(const XMLElement& source, const WebPage& page);
  void showHelp(const WebPage& page, const char16_t* command) const;

  PlainOutput& m_out;
  const Options m_options;
  const ClientFactory m_makeClient;
  std::unique_ptr<LocatorDocument> m_document;
};

} // namespace Tallymoor
