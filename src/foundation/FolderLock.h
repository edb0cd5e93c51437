#pragma once
#include "foundation/OpenFile.h"
#include "foundation/String.h"

namespace Tallymoor {

/// Says that a program works in a folder, so that a second one can leave it alone. It is held until the end
/// of its scope, or of the process, however that ends; no process that this one starts inherits it. It only
/// asks, and never waits. Where a file system knows no locks, or nothing can be written, the folder counts as
/// free.
class FolderLock {
public:
  /// By an empty file in the folder, which stays there. That also works over a network.
  static FolderLock onFileIn(const String& folder);
  /// By the folder itself, for one that must hold nothing else.
  static FolderLock on(const String& folder);

  /// True when another program, or another lock of this one, was first; this one is not held then.
  bool isHeldByAnother() const { return m_heldByAnother; }

private:
  explicit FolderLock(int file);

  OpenFile m_file;
  bool m_heldByAnother = false;
};

} // namespace Tallymoor
