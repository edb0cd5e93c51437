#pragma once
#include "xml/XMLElement.h"

namespace Tallymoor {

/// Writes a document over an old one so that a document that can be read stands there at every moment: it
/// goes to a temporary, is read once from there into what the factory makes, and only then replaces the old
/// one. Throws Exception or XMLException; the old document then stands.
void saveDocument(const String& path, XMLElement& root, const String& dtdName, XMLElement::Factory freshRoot);

} // namespace Tallymoor
