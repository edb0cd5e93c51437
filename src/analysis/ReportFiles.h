#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class XMLElement;

/// Writes a report into the user's Report folder: the document, which names its type and its stylesheet, and
/// the page that the stylesheet in that folder makes of it, both under the name without ending. Files of that
/// name are replaced, each as a whole. Gives the full name of the page.
///
/// Throws Exception where a file can't be read or written, or the stylesheet fails, which the user may have
/// edited; the document is written nevertheless, and the message says where.
String writeReportFiles(XMLElement& report, const String& fileName);

} // namespace Tallymoor
