#include "widgets/HandlerScope.h"
#include <exception>
#include <list>

namespace Tallymoor {

namespace {

struct Waiting {
  const void* owner;
  std::function<void()> work;
  String context;
};

/// All of it belongs to the GUI thread.
struct State {
  unsigned depth = 0;
  bool draining = false;
  String context; ///< of the innermost scope that has one
  std::list<Waiting> waiting;
};

State& state() {
  static State theState;
  return theState;
}

/// Each piece runs outside any scope, so that what it asks for happens at once.
void drain() {
  BigMutexLock lock;
  state().draining = true;
  while (!state().waiting.empty()) {
    const Waiting next = std::move(state().waiting.front());
    state().waiting.pop_front();
    try {
      next.work();
    } catch (const Exception& exception) {
      UserInteraction::Instance().reportException(next.context, exception);
    }
  }
  state().draining = false;
}

} // namespace

HandlerScope::HandlerScope(const String& context)
    : m_outerContext(state().context), m_exceptions(std::uncaught_exceptions()) {
  ++state().depth;
  if (!context.empty())
    state().context = context;
}

HandlerScope::~HandlerScope() {
  state().context = std::move(m_outerContext);
  if (--state().depth > 0 || state().draining || state().waiting.empty())
    return;
  // An exception on its way through must not meet a second one; what waits is served by the next scope.
  if (std::uncaught_exceptions() == m_exceptions)
    drain();
}

bool HandlerScope::running() {
  return state().depth > 0;
}

void HandlerScope::whenDone(const void* owner, std::function<void()> work) {
  if (!running()) {
    work();
    return;
  }
  forget(owner);
  state().waiting.push_back({owner, std::move(work), state().context});
}

void HandlerScope::forget(const void* owner) {
  state().waiting.remove_if([owner](const Waiting& waiting) { return waiting.owner == owner; });
}

} // namespace Tallymoor
