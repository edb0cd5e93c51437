#include "widgets/HandlerScope.h"
#include <algorithm>
#include <exception>
#include <iterator>
#include <list>

namespace Tallymoor {

namespace {

struct Waiting {
  const void* owner;
  std::function<void()> work;
  String context;
};

/// The main window's loop, or that of a modal dialog.
struct Loop {
  const void* window = nullptr;
  unsigned depth = 0;
  bool draining = false;
  std::list<Waiting> waiting;
};

/// All of it belongs to the GUI thread.
struct State {
  std::list<Loop> loops{1}; ///< the innermost one last
  String context;           ///< of the innermost scope that has one
};

State& state() {
  static State theState;
  return theState;
}

Loop& loopAt(std::size_t level) {
  return *std::next(state().loops.begin(), static_cast<std::ptrdiff_t>(level));
}

/// The innermost loop of that window; the main window's when it has none of its own.
Loop& loopOf(const void* window) {
  auto& loops = state().loops;
  const auto found = std::find_if(loops.rbegin(), loops.rend(),
                                  [window](const Loop& loop) { return loop.window == window; });
  return found == loops.rend() || !window ? loops.front() : *found;
}

/// Each piece runs outside any scope, so that what it asks for happens at once.
void drain(Loop& loop) {
  BigMutexLock lock;
  loop.draining = true;
  while (!loop.waiting.empty()) {
    const Waiting next = std::move(loop.waiting.front());
    loop.waiting.pop_front();
    try {
      withUnforeseenFailures(next.work);
    } catch (const Exception& exception) {
      UserInteraction::Instance().reportException(next.context, exception);
    }
  }
  loop.draining = false;
}

} // namespace

HandlerScope::HandlerScope(const String& context)
    : m_outerContext(state().context), m_level(state().loops.size() - 1),
      m_exceptions(std::uncaught_exceptions()) {
  ++loopAt(m_level).depth;
  if (!context.empty())
    state().context = context;
}

HandlerScope::~HandlerScope() {
  state().context = std::move(m_outerContext);
  Loop& loop = loopAt(m_level);
  if (--loop.depth > 0 || loop.draining || loop.waiting.empty())
    return;
  // An exception on its way through must not meet a second one; what waits is served by the next scope.
  if (std::uncaught_exceptions() == m_exceptions)
    drain(loop);
}

bool HandlerScope::running(const void* window) {
  auto& loops = state().loops;
  const auto loop = std::find_if(loops.begin(), loops.end(),
                                 [own = &loopOf(window)](const Loop& each) { return &each == own; });
  return std::any_of(loop, loops.end(), [](const Loop& each) { return each.depth > 0; });
}

void HandlerScope::whenDone(const void* owner, std::function<void()> work, const void* window) {
  Loop& loop = loopOf(window);
  if (loop.depth == 0) {
    work();
    return;
  }
  forget(owner);
  loop.waiting.push_back({owner, std::move(work), state().context});
}

void HandlerScope::forget(const void* owner) {
  for (Loop& loop : state().loops)
    loop.waiting.remove_if([owner](const Waiting& waiting) { return waiting.owner == owner; });
}

ModalLoopScope::ModalLoopScope(const void* window) {
  state().loops.emplace_back().window = window;
}

ModalLoopScope::~ModalLoopScope() {
  auto& loops = state().loops;
  std::list<Waiting> left = std::move(loops.back().waiting);
  loops.pop_back();
  loops.back().waiting.splice(loops.back().waiting.end(), left);
}

} // namespace Tallymoor
