#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// How lengthy work tells of its progress; a progress dialog implements it. GUI thread only. Each call lets
/// events pass.
class Progress {
public:
  virtual ~Progress();
  /// How many steps the bar has.
  virtual void setTotal(unsigned steps) = 0;
  /// Moves the bar on and, if the text is not empty, shows it.
  virtual void step(unsigned increment, const String& text) = 0;
  virtual void setText(const String& text) = 0;
  /// True once the user wants the work to end.
  virtual bool isCancelled() const = 0;
};

/// Supplies a function to run under a progress dialog. What it throws reaches whoever started it.
class HasLengthyFunctions {
public:
  virtual ~HasLengthyFunctions();
  /// The work; the argument says which, for a class that has several.
  virtual void runLengthyFunction(Progress& progress, int argument) = 0;
};

} // namespace Tallymoor
