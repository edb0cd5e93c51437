#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Progress report of a long operation. GUI thread only. Every call processes pending events.
class Progress {
public:
  virtual ~Progress();
  /// Sets the number of steps of the progress bar.
  virtual void setTotal(unsigned steps) = 0;
  /// Advances the bar and shows the text unless it is empty.
  virtual void step(unsigned increment, const String& text) = 0;
  virtual void setText(const String& text) = 0;
  /// True after the user has cancelled.
  virtual bool isCancelled() const = 0;
};

/// An operation to run under a progress dialog. Exceptions propagate to the caller of the dialog.
class HasLengthyFunctions {
public:
  virtual ~HasLengthyFunctions();
  /// Does the work. The argument selects it in a class with several operations.
  virtual void runLengthyFunction(Progress& progress, int argument) = 0;
};

} // namespace Tallymoor
