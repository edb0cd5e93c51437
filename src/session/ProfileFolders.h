#pragma once

namespace Tallymoor {

/// What every start needs before anything is read: the default documents are there, and the remains of
/// interrupted saves are not, in the user's folders, beside the settings, and in the folder of the last
/// export. Throws Exception where a default document can't be copied. GUI thread, under the big mutex.
void tidyProfileFolders();

} // namespace Tallymoor
