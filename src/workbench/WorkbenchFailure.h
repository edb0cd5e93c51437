#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// Ends a command. The message is shown to the user and may have several lines.
class WorkbenchFailure : public Exception {
public:
  /// The exit status: NOT_READ if the result can't be read, WRONG_COMMAND for a wrong command or a missing
  /// file.
  enum Status { NOT_READ = 1, WRONG_COMMAND = 2 };

  WorkbenchFailure(Status status, const String& message) : Exception(message), m_status(status) {}
  Status status() const { return m_status; }

private:
  Status m_status;
};

} // namespace Tallymoor
