#pragma once
#include "foundation/String.h"
#include "session/Journal.h"

namespace Tallymoor {

/// For a journal whose changes do not belong to the records on disk: makes the records to which all its
/// changes lead, from the newest copy of earlier records that the journal knows (".bak" or a dated one), and
/// keeps them as a further dated copy. Gives its path; empty when no copy leads there. Throws Exception when
/// the journal can't be read, or the copy can't be written.
String keepUnappliedRecords(Journal& journal, bool isDamaged);

} // namespace Tallymoor
