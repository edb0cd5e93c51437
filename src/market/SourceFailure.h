#pragma once
#include "foundation/Exception.h"
#include <cstdint>
#include <exception>
#include <vector>

namespace Tallymoor {

/// Why a source gave no price. Decides what happens next.
enum class SourceFault : std::uint8_t {
  NoPrice,    ///< it answered, and has nothing for these days
  WrongCode,  ///< it does not know the code: not asked for it again in this run
  Resting,    ///< it wants no requests for a while, or its limit is used up
  Unreadable, ///< its answer is not what its document says
  Refused,    ///< it answered with an error, as for a key that is missing or wrong
  Network     ///< it could not be reached
};

/// Words for users: "wrong code", "refused".
String wordsOf(SourceFault fault);

/// Why one source gave no price for a code.
struct SourceReason {
  String source;
  SourceFault fault;
  String text; ///< without the user's key
};

/// A source, or all that were asked, gave no price.
class SourceException : public Exception {
public:
  SourceException(SourceFault fault, const String& message) : Exception(message), m_fault(fault) {}
  /// Of several: the fault that all have in common, otherwise Refused.
  explicit SourceException(const std::vector<SourceReason>& reasons);
  void typeName(String& text) const override;
  SourceFault fault() const { return m_fault; }

private:
  SourceFault m_fault;
};

/// A text of a source or document for a message: on one line, and cut behind 300 characters.
String shortened(const String& text);

/// What the failure of a source means.
SourceFault faultOf(const Exception& failure);

} // namespace Tallymoor
