#include "shell/OnlineHelp.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"

namespace Tallymoor {

String helpPage() {
  const String guide = Platform::Instance().installedDefaultsDirectory() + u"/../guide/guide.html";
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
