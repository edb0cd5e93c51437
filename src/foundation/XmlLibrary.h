#pragma once

namespace Tallymoor {

/// Makes the XML library ready; safe to call often and from any thread.
void ensureXmlLibrary();
/// Ends the XML library after all threads have been joined; the transcoders go first. Nothing may convert
/// text afterwards.
void terminateXmlLibrary();

} // namespace Tallymoor
