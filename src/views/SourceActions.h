#pragma once
#include "foundation/String.h"
#include "market/CsvFile.h"
#include <vector>

namespace FX {
class FXWindow;
}

namespace Tallymoor {

// What the user can do about the sources of prices, with the questions that belong to it. GUI thread, under
// the big mutex. All throw Exception if a change can't be written; then nothing has changed.

/// Asks before made-up prices give way to real ones, if they are made up now. True if they may.
bool mayEndSample();
/// Switches a source on: asks for its key and lets the user try it, where that was not done yet, and asks
/// before made-up prices give way to real ones, or the other way round. False if the user does not want it.
bool switchSourceOn(FX::FXWindow* owner, const String& name);
void switchSourceOff(const String& name);
/// False if the user typed none. An empty one removes the key that is there.
bool enterSourceKey(FX::FXWindow* owner, const String& name);
/// Shows what the source gives. After a success the user may switch it on. True if it is on then.
bool trySource(FX::FXWindow* owner, const String& name);
/// The name of the new source, which is on unless the user does not want that; empty if none was added.
String addSourceFolder(FX::FXWindow* owner);
/// The same for a command, which is tried first.
String addSourceCommand(FX::FXWindow* owner);
/// Asks what the files of a folder leave open, and tells of those that can't be read.
void askAboutFiles(const String& name);
/// Takes the user's answers in. False if he cancelled.
bool askDoubts(const String& file, const std::vector<FormatDoubt>& doubts, CsvAnswers& answers);
/// The words of a command as a user types them: separated by blanks, which a word in quotation marks may
/// hold. Throws Exception for a quotation mark without its partner.
std::vector<String> commandWords(const String& typed);
/// Asks for all prices again, for sources that have changed.
void fetchAfresh();

} // namespace Tallymoor
