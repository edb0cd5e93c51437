#pragma once
#include <string>

namespace Tallymoor {

/// Turns a document into another by an XSLT 1.0 stylesheet; both are whole documents in memory, in the
/// encoding that their declarations say. The result is written as the stylesheet's xsl:output asks.
///
/// A stylesheet may be the user's own or a delivered one, so it gets at nothing but the document: whatever
/// reads or writes a file, makes a folder or goes to the network is refused, and so is one that never ends.
/// The "version" of its root counts our releases of it and says nothing of the language, which is always 1.0.
///
/// GUI thread. Throws Exception with what the library says, where it stands in the stylesheet included.
std::string transformByStylesheet(const std::string& stylesheet, const std::string& document);

} // namespace Tallymoor
