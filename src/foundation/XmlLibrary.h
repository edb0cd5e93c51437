#pragma once

namespace Tallymoor {

/// Initialises the XML library. Thread-safe; may be called repeatedly.
void ensureXmlLibrary();
/// Terminates the XML library and releases the transcoders. Call it after all threads have ended. No text
/// conversion may follow.
void terminateXmlLibrary();

} // namespace Tallymoor
