#pragma once

namespace Tallymoor {

/// How many threads wait for the big mutex now. For tests, which can't see it otherwise.
unsigned threadsWaitingForBigMutex();

} // namespace Tallymoor
