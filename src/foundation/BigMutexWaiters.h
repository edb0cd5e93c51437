#pragma once

namespace Tallymoor {

/// Number of threads waiting for the big mutex. For tests.
unsigned threadsWaitingForBigMutex();

} // namespace Tallymoor
