#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

/// The shape of every message handler: takes the big mutex, does the work, and shows an Exception in an error
/// box with the context in front of it ("BuySharesPanel::onChooseDate failed."). Nothing of the program's own
/// leaves a handler. Returns 1, the toolkit's "handled".
template <typename Work>
long handleMessage(const String& context, Work work) {
  BigMutexLock lock;
  try {
    work();
  } catch (const Exception& exception) {
    MainWindow::reportException(context, exception);
  }
  return 1;
}

} // namespace Tallymoor
