#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// The folder of the last file that the user chose for an export, an import or a chart, from the settings;
/// empty if there was none. The next start removes temporaries from it that an interrupted write left.
String lastTransferFolder();
void rememberTransferFolder(const String& folder);
/// Remembers the folder of this file on disk, which is to be known before there is a temporary in it.
void commitTransferFolderOf(const String& path);

} // namespace Tallymoor
