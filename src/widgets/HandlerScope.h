#pragma once
#include "foundation/BigMutex.h"
#include "foundation/String.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include <functional>
#include <utility>

namespace Tallymoor {

/// Marks a stretch in which a handler of a table, a tree or a node is running, a popup or dialog that it
/// opened included. What would delete rows, nodes or pages under such a handler is handed to whenDone and
/// runs when the outermost one has returned. GUI thread only, under the big mutex.
class HandlerScope {
public:
  /// The context is what a failure of the waiting work is reported with; empty takes that of the enclosing
  /// scope.
  explicit HandlerScope(const String& context = String());
  /// At the end of the outermost scope, runs what waits, in the order in which it was asked for.
  ~HandlerScope();
  HandlerScope(const HandlerScope&) = delete;
  HandlerScope& operator=(const HandlerScope&) = delete;

  /// True if a handler runs in the loop of the window, or in that of a dialog over it. The handler that
  /// opened a modal dialog does not run in that dialog's loop.
  static bool running(const void* window = nullptr);

  /// Runs the work at once when no handler is running, and throws what it throws; otherwise runs it when the
  /// outermost one has returned. The window is the one that the owner stands in: work of a modal dialog's
  /// widgets waits for the handlers inside that dialog alone, all other work for those of the main window. An
  /// owner has one piece of waiting work: a new one takes the old one's place, at the end of the queue. A
  /// whole change goes in as one piece (rebuild the nodes, then refresh their tables), so that nothing of it
  /// sees a half-changed tree.
  static void whenDone(const void* owner, std::function<void()> work, const void* window = nullptr);
  /// Drops what waits for this owner: for the owner's destructor.
  static void forget(const void* owner);

private:
  String m_outerContext;
  std::size_t m_level; ///< how many modal dialogs were open when it began
  int m_exceptions;
};

/// A modal dialog's loop: handlers inside it are counted apart from the one that opened the dialog. Nests.
class ModalLoopScope {
public:
  explicit ModalLoopScope(const void* window);
  /// What is left waiting joins that of the loop outside.
  ~ModalLoopScope();
  ModalLoopScope(const ModalLoopScope&) = delete;
  ModalLoopScope& operator=(const ModalLoopScope&) = delete;
};

/// The shape of every message handler: takes the big mutex, runs the work, reports an exception, foreseen or
/// not, with the context, and gives 1, which tells the toolkit that the message was handled.
template <class Work>
long guardedHandler(const String& context, Work&& work) {
  BigMutexLock lock;
  HandlerScope scope(context);
  try {
    withUnforeseenFailures(std::forward<Work>(work));
  } catch (const Exception& exception) {
    UserInteraction::Instance().reportException(context, exception);
  }
  return 1;
}

} // namespace Tallymoor
