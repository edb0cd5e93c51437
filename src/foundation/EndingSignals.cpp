#include "foundation/EndingSignals.h"
#include <atomic>

namespace Tallymoor {

namespace {

constexpr std::array ENDING{SIGTERM, SIGINT, SIGHUP};

std::atomic<bool> ended = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may take no lock");

using Handler = void (*)(int);
std::array<std::atomic<Handler>, ENDING.size()> passOnTo;

void note(int number) {
  ended = true;
  for (std::size_t i = 0; i < ENDING.size(); ++i)
    if (const Handler handler = passOnTo[i]; ENDING[i] == number && handler)
      handler(number);
}

} // namespace

EndingSignalsBlocked::EndingSignalsBlocked() : m_before() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : ENDING)
    sigaddset(&ending, number);
  pthread_sigmask(SIG_BLOCK, &ending, &m_before);
}

EndingSignalsBlocked::~EndingSignalsBlocked() {
  pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

EndingSignalsNoted::EndingSignalsNoted() {
  static_assert(COUNT == ENDING.size());
  ended = false;
  for (std::size_t i = 0; i < COUNT; ++i) {
    sigaction(ENDING[i], nullptr, &m_before[i]);
    const Handler before = m_before[i].sa_handler;
    passOnTo[i] = before == SIG_DFL || before == SIG_IGN ? nullptr : before;
    struct sigaction noting = m_before[i];
    noting.sa_handler = &note;
    // With no handler installed, the signal keeps its default action.
    if (passOnTo[i])
      sigaction(ENDING[i], &noting, nullptr);
  }
}

EndingSignalsNoted::~EndingSignalsNoted() {
  for (std::size_t i = 0; i < COUNT; ++i)
    sigaction(ENDING[i], &m_before[i], nullptr);
  ended = false;
}

bool EndingSignalsNoted::hasCome() {
  return ended;
}

void EndingSignalsNoted::forget() {
  ended = false;
}

} // namespace Tallymoor
