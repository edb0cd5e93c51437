#pragma once
#include "foundation/String.h"

namespace FX {
class FXWindow;
}

namespace Tallymoor {

class XMLPortfolios;

// The file dialogs of import and export. GUI thread, under the big mutex.

/// Asks for the file to import from; an empty text when the user cancelled.
String chooseImportFile(FX::FXWindow* owner);

/// Asks for the file, and whether it may be overwritten, writes the records there and says so. Throws
/// Exception when it can't be written; an older file then stands.
void exportPortfolios(FX::FXWindow* owner, XMLPortfolios& records);

} // namespace Tallymoor
