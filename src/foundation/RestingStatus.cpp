#include "foundation/RestingStatus.h"
#include "foundation/Date.h"

namespace Tallymoor {

String restingStatusText() {
  if (!Date::hasFixedDate())
    return u"Ready.";
  return u"You are looking at " + Date().toString(DATE_DISPLAY_LOCAL) + u", not at today.";
}

} // namespace Tallymoor
