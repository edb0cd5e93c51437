#include "foundation/UnforeseenFailure.h"
#include <exception>
#include <new>

namespace Tallymoor {

namespace {

constexpr const char16_t* ADVICE =
    u"\nWhat you did may not have come to its end. Please look it over, save your "
    u"records, and start Tallymoor\n"
    u"again if something looks wrong.";

} // namespace

void UnforeseenFailure::typeName(String& text) const {
  text = u"Unforeseen failure";
}

UnforeseenFailure unforeseenFailure() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return UnforeseenFailure(String(u"there is not enough memory.") + ADVICE);
  } catch (const std::exception& exception) {
    return UnforeseenFailure(String(exception.what()) + u"." + ADVICE);
  } catch (...) {
    return UnforeseenFailure(String(u"of an unknown kind.") + ADVICE);
  }
}

} // namespace Tallymoor
