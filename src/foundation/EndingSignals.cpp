#include "foundation/EndingSignals.h"
#include <initializer_list>

namespace Tallymoor {

EndingSignalsBlocked::EndingSignalsBlocked() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&ending, number);
  pthread_sigmask(SIG_BLOCK, &ending, &m_before);
}

EndingSignalsBlocked::~EndingSignalsBlocked() {
  pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

} // namespace Tallymoor
