#pragma once
#include "market/SourceList.h"

namespace Tallymoor {

// The file in which a SourceList is kept. What the folder of documents holds is not in it.

/// Throws XMLException for a file that can't be read, and Exception for a value in it that means nothing.
void readSourceList(const String& path, std::vector<ListedSource>& sources,
                    std::map<String, SourcePin>& pins);
/// Replaces the file. Throws Exception or XMLException; the old file then stands.
void writeSourceList(const String& path, const std::vector<ListedSource>& sources,
                     const std::map<String, SourcePin>& pins);

} // namespace Tallymoor
