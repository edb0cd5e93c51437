#include "foundation/FileSteps.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/OpenFile.h"
#include <cstring>
#include <fcntl.h>

namespace Tallymoor {

void failReplacing(const char* what, const std::string& path, int reason) {
  throw Exception(String(u"replaceFile - ") + String(what) + u" " + String(path.c_str()) + u": " +
                  String(std::strerror(reason)));
}

int writeWhole(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = FileOperations::current().write(file, bytes, count);
    if (written == 0)
      return ENOSPC;
    if (written < 0 && errno != EINTR)
      return errno;
    if (written > 0) {
      bytes += written;
      count -= static_cast<std::size_t>(written);
    }
  }
  return 0;
}

void flushFolderOf(const std::string& path) {
  const std::string folder = folderOf(path);
  OpenFile directory(
      uninterrupted([&folder] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (directory.get() < 0 && errno == EACCES)
    return;
  if (directory.get() < 0)
    failReplacing("cannot open the folder of", path, errno);
  const int synced = uninterrupted([&] { return FileOperations::current().sync(directory.get()); });
  if (synced != 0 && errno != EINVAL && errno != EOPNOTSUPP)
    failReplacing("cannot flush the folder of", path, errno);
  if (const int error = directory.close())
    failReplacing("cannot close the folder of", path, error);
}

} // namespace Tallymoor
