#pragma once
#include "foundation/OpenFile.h"
#include "foundation/String.h"

namespace Tallymoor {

/// An advisory lock on a folder, held until destruction or the end of the process. Child processes don't
/// inherit it. Never blocks. If the file system has no locks or is read-only, the folder counts as free.
class FolderLock {
public:
  /// Locks a file in the folder and leaves the file there; it says who holds the lock. Works on network file
  /// systems.
  static FolderLock onFileIn(const String& folder);
  /// Locks the folder itself, for a folder that must contain no extra file.
  static FolderLock on(const String& folder);

  /// True if another program or another FolderLock holds the lock. This object then holds nothing.
  bool isHeldByAnother() const { return m_heldByAnother; }
  /// "process 1234 on HOST", of the other one if there is one; empty if that is not known.
  const String& holder() const { return m_holder; }

private:
  explicit FolderLock(int file);

  OpenFile m_file;
  bool m_heldByAnother = false;
  String m_holder;
};

} // namespace Tallymoor
