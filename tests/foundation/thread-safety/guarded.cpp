// Compiled by clang alone, twice: as it stands, and with one way of touching what the big mutex guards
// without holding it, which must be refused.
#include "foundation/RunTimeSettings.h"

namespace Tallymoor {
namespace {

class Guarded {
public:
  int read() {
    const BigMutexLock lock;
    return m_value;
  }
  void change() {
    const BackgroundPassScope scope;
    changeLocked();
  }
#ifdef READ_WITHOUT_LOCK
  int readWithoutLock() {
    return m_value;
  }
#endif
#ifdef CALL_WITHOUT_LOCK
  void callWithoutLock() {
    changeLocked();
  }
#endif

private:
  void changeLocked() REQUIRES(bigMutex()) {
    ++m_value;
  }

  int m_value GUARDED_BY(bigMutex()) = 0;
};

} // namespace

int useGuarded() {
  Guarded guarded;
  guarded.change();
  return guarded.read();
}

} // namespace Tallymoor
