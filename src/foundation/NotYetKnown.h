#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// A figure needs a price that is being fetched in the background. No failure: what shows the figure shows
/// NOT_YET_KNOWN in its place and is told when the price comes.
class NotYetKnown : public Exception {
public:
  using Exception::Exception;
};

inline const String NOT_YET_KNOWN = u"...";

} // namespace Tallymoor
