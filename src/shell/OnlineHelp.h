#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Where the help is published.
inline const String HELP_ADDRESS = u"https://tallymoor.brindlecove.example/help";
inline const String FEEDBACK_ADDRESS = u"feedback@brindlecove.example";

/// What "Online Help" opens: the guide that was installed beside the program, else its published address.
String helpPage();

/// A link that begins an email about the program.
String feedbackLink();

} // namespace Tallymoor
