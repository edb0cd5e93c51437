#include "foundation/BigMutex.h"
#include "foundation/BigMutexWaiters.h"

namespace Tallymoor {

namespace {

std::atomic<unsigned> waiting = 0;

} // namespace

unsigned threadsWaitingForBigMutex() {
  return waiting;
}

void BigMutex::lock() NO_THREAD_SAFETY_ANALYSIS {
  if (!m_mutex.try_lock()) {
    ++waiting;
    m_mutex.lock();
    --waiting;
  }
  m_owner.store(std::this_thread::get_id());
  ++m_depth;
}

void BigMutex::unlock() NO_THREAD_SAFETY_ANALYSIS {
  if (--m_depth == 0)
    m_owner.store(std::thread::id());
  m_mutex.unlock();
}

bool BigMutex::heldByThisThread() const {
  return m_owner.load() == std::this_thread::get_id();
}

unsigned BigMutex::releaseAll() NO_THREAD_SAFETY_ANALYSIS {
  if (!heldByThisThread())
    return 0;
  const unsigned depth = m_depth;
  for (unsigned level = 0; level < depth; ++level)
    unlock();
  return depth;
}

void BigMutex::acquire(unsigned depth) NO_THREAD_SAFETY_ANALYSIS {
  for (unsigned level = 0; level < depth; ++level)
    lock();
}

BigMutex& bigMutex() {
  static BigMutex mutex;
  return mutex;
}

BigMutexRelease::BigMutexRelease() : m_depth(bigMutex().releaseAll()) {}

BigMutexRelease::~BigMutexRelease() {
  bigMutex().acquire(m_depth);
}

} // namespace Tallymoor
