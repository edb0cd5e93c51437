#pragma once
#include "xml/LocatorDocuments.h"
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

class PlainOutput;

/// A locator document read from a file. Its root element determines which of the three kinds it is.
class LocatorDocument {
public:
  enum class Kind { CurrentPrices, HistoricalPrices, CodeSearch };

  /// Throws WorkbenchFailure if the file can't be read, is no locator document or is invalid; then with the
  /// line.
  explicit LocatorDocument(const std::string& path);

  Kind kind() const;
  /// The first source with this domain; an empty domain selects the active one. Throws WorkbenchFailure if
  /// there is none.
  const XMLElement& source(const String& domain) const;
  /// Shows the kind of document and its sources.
  void show(PlainOutput& out) const;

private:
  struct Form;

  String sourceNames() const;

  String m_path;
  const Form* m_form;
  std::unique_ptr<XMLElement> m_root;
};

/// The name of the root element of a document. Throws WorkbenchFailure unless it is XML.
String rootElementOf(const std::string& path);

} // namespace Tallymoor
