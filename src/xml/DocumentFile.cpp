#include "xml/DocumentFile.h"
#include "foundation/FileReplacement.h"

namespace Tallymoor {

namespace {

struct Destroy {
  void operator()(XMLElement* element) const { element->destroy(); }
};

} // namespace

void saveDocument(const String& path, XMLElement& root, const String& dtdName,
                  XMLElement::Factory freshRoot) {
  replaceFile(
      path, [&](std::ostream& stream) { root.encodeWithDoctype(stream, dtdName); },
      [freshRoot](const String& temporaryPath) {
        std::unique_ptr<XMLElement, Destroy> copy(freshRoot());
        copy->decode(temporaryPath);
      });
}

} // namespace Tallymoor
