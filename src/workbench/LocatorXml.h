#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class PlainOutput;
class XMLElement;

// Locators as a person would write them into a document: indented, ready to be pasted. What a terminal or an
// editor could spoil is written as a character reference.

void writeTagLocator(PlainOutput& out, const XMLElement& tagLocator, unsigned level);
void writeTableLocator(PlainOutput& out, const XMLElement& tableLocator, unsigned level);

} // namespace Tallymoor
