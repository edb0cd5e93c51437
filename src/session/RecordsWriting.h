#pragma once
#include "books/CapitalRecordDocument.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "session/RecordsOnDisk.h"
#include "xml/ElementText.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// Full name of the records document.
String recordsPath();
/// A name for a file that must not be lost: the first of "PATH.1", "PATH.2", ... that is free.
String unusedPath(const String& path);

/// What a save writes, as copies, so that any thread can write it.
struct RecordsWriting {
  enum class Backup {
    Renew, ///< what stands in the file goes to ".bak"
    Keep,  ///< ".bak" stays
    Spare  ///< as Renew, after the present ".bak" was set aside
  };
  /// A capital record that changed with its portfolio.
  struct Capital {
    String path;
    std::optional<CapitalRecordDocument> document; ///< nothing where the caller writes it
    bool isWritten = false;
  };

  DocumentText text; ///< of the records
  Backup backup = Backup::Renew;
  Date day = Date::realToday(); ///< of the dated copy
  std::vector<Capital> capital;
  std::optional<Exception> backupFailure; ///< of write()
  bool isWritten = false;                 ///< the records document
  RecordsOnDisk onDisk;                   ///< what it is then

  /// Files of capital records are emptied before the records are replaced: a crash in between then leaves
  /// days that are missing, and computed again, instead of days that are wrong. Throws Exception; what was
  /// written is marked.
  void write();
};

} // namespace Tallymoor
