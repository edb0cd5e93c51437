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

/// Tries a locator document on a page, and shows what the program would do with it.
class CheckCommand {
public:
  struct Options {
    std::string document;
    std::vector<std::string> pages; ///< saved ones; several for a search that asks several pages
    std::optional<String> code;     ///< a code or text to fetch the page for
    std::string saveTo;             ///< where to keep the fetched page; empty for nowhere
    String domain;                  ///< the source to check; empty for the one in use
    bool allRows = false;
  };
  using ClientFactory = std::function<std::unique_ptr<HTTPClient>()>;

  CheckCommand(PlainOutput& out, Options options, ClientFactory makeClient);
  ~CheckCommand();

  /// True when the program would get from the pages what it wants, and without a page when the document is
  /// sound. Throws WorkbenchFailure.
  bool run();

private:
  bool checkPrice(const XMLElement& source);
  bool checkHistory(const XMLElement& source);
  bool checkSearch(const XMLElement& source);
  /// The page that a locator is tried on, from where the options say; null when they name none for it.
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
