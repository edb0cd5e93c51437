#include "shell/OnlineHelp.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include <filesystem>

namespace Tallymoor {

String helpPage() {
  // Without "..": the path is shown by the browser, and some openers refuse such steps.
  const std::filesystem::path defaults = Platform::Instance().installedDefaultsDirectory().toUTF8();
  const String guide((defaults.parent_path() / "guide/guide.html").c_str());
  return filePresence(guide) == FilePresence::Missing ? HELP_ADDRESS : guide;
}

// The blanks and angle brackets of the texts can't stand in a link as they are.
String feedbackLink() {
  return u"mailto:" + FEEDBACK_ADDRESS +
         u"?subject=Feedback%20on%20Tallymoor"
         u"&body=To%20the%20Brindlecove,%0D%0A"
         u"%3Ctell%20us%20what%20you%20think%20of%20Tallymoor%20here%3E%0D%0A";
}

} // namespace Tallymoor
