#include "foundation/LinkedFile.h"
#include "foundation/FileOperations.h"
#include "foundation/FileSteps.h"
#include "foundation/OpenFile.h"
#include "foundation/TemporaryName.h"
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::size_t BUFFER_SIZE = std::size_t{64} * 1024;
constexpr char END_OF_NOTE = '\n'; ///< A note without it is incomplete and is discarded.

int openFile(const std::string& path, int flags) {
  return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, 0600); });
}

int syncError(int file) {
  return uninterrupted([file] { return FileOperations::current().sync(file); }) == 0 ? 0 : errno;
}

void writeNote(const std::string& note, const std::string& target) {
  const std::string content = target.substr(target.rfind('/') + 1) + END_OF_NOTE;
  OpenFile file(openFile(note, O_WRONLY | O_CREAT | O_EXCL));
  int error = file.get() < 0 ? errno : writeWhole(file.get(), content.data(), content.size());
  if (error == 0)
    error = syncError(file.get());
  if (error == 0)
    error = file.close();
  if (error != 0)
    failReplacing("cannot write beside", target, error);
}

/// Reserves disk space before the old content is touched. Returns 0 or the errno value.
int reserve(int file, off_t size) {
  struct stat info {};
  if (::fstat(file, &info) != 0)
    return errno;
  if (size <= info.st_size)
    return 0;
  int error = 0;
  do
    error = ::posix_fallocate(file, info.st_size, size - info.st_size);
  while (error == EINTR);
  if (error == EINVAL || error == EOPNOTSUPP)
    return 0; // The file system can't reserve space.
  if (error != 0)
    uninterrupted([&] { return ::ftruncate(file, info.st_size); });
  return error;
}

/// Overwrites the target with the source's content. Returns 0 or the errno value.
int overwrite(const std::string& source, const std::string& target) {
  const OpenFile from(openFile(source, O_RDONLY));
  OpenFile to(openFile(target, O_WRONLY));
  struct stat info {};
  if (from.get() < 0 || to.get() < 0 || ::fstat(from.get(), &info) != 0)
    return errno;
  if (const int error = reserve(to.get(), info.st_size))
    return error;
  std::vector<char> buffer(BUFFER_SIZE);
  for (;;) {
    const ssize_t count = uninterrupted([&] { return ::read(from.get(), buffer.data(), buffer.size()); });
    if (count < 0)
      return errno;
    if (count == 0)
      break;
    if (const int error = writeWhole(to.get(), buffer.data(), static_cast<std::size_t>(count)))
      return error;
  }
  if (uninterrupted([&] { return ::ftruncate(to.get(), info.st_size); }) != 0)
    return errno;
  if (const int error = syncError(to.get()))
    return error;
  return to.close();
}

/// Removes the note first: a temporary without a note is discarded at the next start.
void removeBoth(const std::string& note, const std::string& temporary) {
  ::unlink(note.c_str());
  ::unlink(temporary.c_str());
}

/// Fallback: renames the temporary over the target. Other hard links keep the old content.
void renameAfterAll(const std::string& temporary, const std::string& target, const std::string& note) {
  if (uninterrupted([&] { return FileOperations::current().rename(temporary.c_str(), target.c_str()); }) != 0)
    failReplacing("cannot replace", target, errno); // Note and temporary stay for the next start.
  ::unlink(note.c_str());
  flushFolderOf(target);
}

bool isOwnRegularFile(const std::string& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == ::geteuid();
}

bool isRegularFile(const std::string& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

/// The file name stored in a note. Empty if the note is incomplete or foreign.
std::optional<std::string> readNote(const std::string& note) {
  if (!isOwnRegularFile(note))
    return std::nullopt;
  std::ifstream file = openToRead(note);
  std::string name;
  if (!std::getline(file, name, END_OF_NOTE) || file.eof() || name.empty() || name.size() > NAME_MAX ||
      name.find('/') != std::string::npos)
    return std::nullopt;
  return name;
}

void finish(const std::string& folder, const std::string& noteName) {
  const std::string note = folder + "/" + noteName;
  const std::string temporary = folder + "/" + temporaryOfNote(noteName);
  const std::optional<std::string> name = readNote(note);
  const std::string target = folder + "/" + name.value_or(std::string());
  if (name && isOwnRegularFile(temporary) && isRegularFile(target))
    if (overwrite(temporary, target) != 0)
      renameAfterAll(temporary, target, note); // A broken hard link must not prevent the start.
  removeBoth(note, temporary);
}

} // namespace

bool hasAnotherName(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink > 1 &&
         ::access(path.c_str(), W_OK) == 0;
}

void writeIntoLinkedFile(const std::string& temporary, const std::string& target) {
  const std::string note = noteOfTemporary(temporary);
  try {
    writeNote(note, target);
    flushFolderOf(target);
  } catch (...) {
    removeBoth(note, temporary);
    throw;
  }
  if (const int error = overwrite(temporary, target)) {
    renameAfterAll(temporary, target, note);
    failReplacing("wrote the file, but could not keep the hard link of", target, error);
  }
  removeBoth(note, temporary);
}

void finishLinkedFiles(const std::string& folder) {
  for (const std::string& name : namesIn(folder))
    if (isNoteName(name))
      finish(folder, name);
}

} // namespace Tallymoor
