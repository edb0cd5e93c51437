#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class PlainOutput;
class XMLElement;

// Formats locators as indented XML, ready to be pasted into a document. Characters that a terminal or an
// editor could change are written as character references.

/// A text as the value of an attribute or of an element.
String xmlEscaped(const String& value);

void writeTagLocator(PlainOutput& out, const XMLElement& tagLocator, unsigned level);
void writeTableLocator(PlainOutput& out, const XMLElement& tableLocator, unsigned level);

} // namespace Tallymoor
