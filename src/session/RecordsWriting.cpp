#include "session/RecordsWriting.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/UnforeseenFailure.h"
#include "session/Backups.h"
#include "xml/PortfolioRecords.h"
#include <ostream>
#include <string>

namespace Tallymoor {

namespace {

void backUp(const String& path, RecordsWriting::Backup backup) {
  const String copy = path + u".bak";
  if (backup == RecordsWriting::Backup::Spare)
    copyFileReplacing(copy, unusedPath(copy));
  if (backup != RecordsWriting::Backup::Keep)
    copyFileReplacing(path, copy);
}

} // namespace

String recordsPath() {
  return dataDirectory(Platform::Instance(), APP_NAME) + PORTFOLIOS_FILE;
}

String unusedPath(const String& path) {
  int number = 1;
  while (filePresence(path + u"." + String::fromLong(number)) != FilePresence::Missing)
    ++number;
  return path + u"." + String::fromLong(number);
}

void RecordsWriting::write() {
  const String path = recordsPath();
  try {
    withUnforeseenFailures([&] {
      backUp(path, backup);
      keepBackupOfDay(path, day);
    });
  } catch (const Exception& exception) {
    backupFailure = exception;
  }
  for (const Capital& each : capital)
    emptyFile(each.path);
  const std::string content = text.text();
  replaceFile(
      path, [&content](std::ostream& stream) { stream << content; },
      [&](const String& temporaryPath) {
        XMLPortfolios().decode(temporaryPath);
        onDisk = RecordsOnDisk::asWritten(temporaryPath, content);
      });
  isWritten = true;
  for (Capital& each : capital)
    if (each.document) {
      each.document->writeFile(each.path);
      each.isWritten = true;
    }
}

} // namespace Tallymoor
