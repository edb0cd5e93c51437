#include "xml/DocumentFile.h"
#include "foundation/FileReplacement.h"
#include <functional>
#include <ostream>

namespace Tallymoor {

namespace {

struct Destroy {
  void operator()(XMLElement* element) const { element->destroy(); }
};

void replaceDocument(const String& path, const std::function<void(std::ostream&)>& write,
                     XMLElement::Factory freshRoot) {
  replaceFile(path, write, [freshRoot](const String& temporaryPath) {
    std::unique_ptr<XMLElement, Destroy> copy(freshRoot());
    copy->decode(temporaryPath);
  });
}

} // namespace

void saveDocument(const String& path, XMLElement& root, const String& dtdName,
                  XMLElement::Factory freshRoot) {
  replaceDocument(
      path, [&](std::ostream& stream) { root.encodeWithDoctype(stream, dtdName); }, freshRoot);
}

void saveDocumentText(const String& path, const std::string& text, XMLElement::Factory freshRoot) {
  replaceDocument(
      path, [&text](std::ostream& stream) { stream << text; }, freshRoot);
}

} // namespace Tallymoor
