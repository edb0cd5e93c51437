#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// A transfer that failed on its way, with the reason in plain words beside the text that support knows.
class TransferFailure : public HTTPException {
public:
  TransferFailure(const String& message, const String& reason, unsigned code = 0)
      : HTTPException(message, code), m_reason(reason) {}
  const String& reason() const { return m_reason; }

private:
  String m_reason;
};

} // namespace Tallymoor
