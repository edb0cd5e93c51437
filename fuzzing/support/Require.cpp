#include "support/Require.h"
#include <cstdio>
#include <cstdlib>

namespace Tallymoor::Fuzz {

void require(bool holds, const char* what) {
  if (holds)
    return;
  std::fprintf(stderr, "\nNOT SO: %s\n", what);
  std::abort();
}

} // namespace Tallymoor::Fuzz
