#pragma once
#include "xml/LocatorDocuments.h"
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

class PlainOutput;

/// A locator document from a file, of whichever of the three kinds its root says.
class LocatorDocument {
public:
  enum class Kind { CurrentPrices, HistoricalPrices, CodeSearch };

  /// Throws WorkbenchFailure for a file that can't be read or holds something else, and for one that breaks
  /// the form, with the line.
  explicit LocatorDocument(const std::string& path);

  Kind kind() const;
  /// The source with this domain, the first of several; an empty text stands for the one in use. Throws
  /// WorkbenchFailure when there is none.
  const XMLElement& source(const String& domain) const;
  /// What it is, and the sources that it describes.
  void show(PlainOutput& out) const;

private:
  struct Form;

  String sourceNames() const;

  String m_path;
  const Form* m_form;
  std::unique_ptr<XMLElement> m_root;
};

} // namespace Tallymoor
