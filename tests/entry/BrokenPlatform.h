#pragma once
#include "foundation/Exception.h"
#include "foundation/LinuxPlatform.h"

namespace Tallymoor {

/// A platform that fails to format dates.
class BrokenPlatform : public LinuxPlatform {
public:
  String shortDateFormat(const Date&) override { throw Exception(u"no form for dates"); }
};

} // namespace Tallymoor
