#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// Ends a command of the workbench. The message is for the user, in one or more lines.
class WorkbenchFailure : public Exception {
public:
  /// The program's exit status: what was looked for can't be read, or the command itself was wrong (also a
  /// file that isn't there).
  enum Status { NOT_READ = 1, WRONG_COMMAND = 2 };

  WorkbenchFailure(Status status, const String& message) : Exception(message), m_status(status) {}
  Status status() const { return m_status; }

private:
  Status m_status;
};

} // namespace Tallymoor
