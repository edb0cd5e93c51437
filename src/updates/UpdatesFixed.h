#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// This copy of the program can't have its own files replaced. The message says why; documents are not
/// concerned.
class ProgramFilesFixed : public Exception {
public:
  using Exception::Exception;
};

/// This copy of the program could not tell genuine documents from others, so it takes none. The message says
/// why.
class DocumentsFixed : public Exception {
public:
  using Exception::Exception;
};

} // namespace Tallymoor
