#include "foundation/FileReplacement.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/FileSteps.h"
#include "foundation/LinkedFile.h"
#include "foundation/OpenFile.h"
#include "foundation/TemporaryName.h"
#include "foundation/Uninterrupted.h"
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <streambuf>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::size_t BUFFER_SIZE = std::size_t{64} * 1024;

/// Stream buffer that writes to a file descriptor and keeps the first error.
class FileBuffer : public std::streambuf {
public:
  explicit FileBuffer(int file) : m_file(file), m_buffer(BUFFER_SIZE) {
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
  }
  int error() const { return m_error; }

protected:
  int_type overflow(int_type c) override {
    if (!flushBuffer())
      return traits_type::eof();
    if (!traits_type::eq_int_type(c, traits_type::eof()))
      sputc(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
  }
  int sync() override { return flushBuffer() ? 0 : -1; }

private:
  bool flushBuffer() {
    if (m_error == 0)
      m_error = writeWhole(m_file, pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
    return m_error == 0;
  }

  int m_file;
  int m_error = 0;
  std::vector<char> m_buffer;
};

/// Follows a symbolic link, so that a file kept elsewhere by the user stays there.
std::string resolved(const std::string& path) {
  std::error_code failed;
  if (!std::filesystem::is_symlink(path, failed))
    return path;
  const std::string target = std::filesystem::canonical(path, failed);
  return failed ? path : target;
}

std::string randomLetters() {
  static constexpr std::string_view LETTERS = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device device;
  std::uniform_int_distribution<std::size_t> choice(0, LETTERS.size() - 1);
  std::string text;
  for (int i = 0; i < 12; ++i)
    text.push_back(LETTERS[choice(device)]);
  return text;
}

/// A temporary file next to its target. Removed at the end of the scope unless published.
class Temporary {
public:
  explicit Temporary(const std::string& target) : m_target(target), m_file(create()) {}
  ~Temporary() {
    if (!m_published)
      ::unlink(m_path.c_str());
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;

  const std::string& path() const { return m_path; }

  void fill(const std::function<void(std::ostream&)>& write) {
    FileBuffer buffer(m_file.get());
    std::ostream stream(&buffer);
    write(stream);
    stream.flush();
    if (!stream)
      failReplacing("cannot write", m_target, buffer.error() ? buffer.error() : EIO);
  }

  void flushToDisk() {
    if (uninterrupted([this] { return FileOperations::current().sync(m_file.get()); }) != 0)
      failReplacing("cannot flush", m_target, errno);
    if (const int error = m_file.close())
      failReplacing("cannot close", m_target, error);
  }

  /// Writes the content into the existing file, so that all hard links of the target get it.
  void publishInto() {
    m_published = true; // Keep the temporary on failure: the next start needs it.
    writeIntoLinkedFile(m_path, m_target);
  }

  void publish() {
    if (uninterrupted(
            [this] { return FileOperations::current().rename(m_path.c_str(), m_target.c_str()); }) != 0)
      failReplacing("cannot replace", m_target, errno);
    m_published = true;
  }

private:
  /// Creates the file with the mode of the target, or 0600 if the target is new.
  int create() {
    for (;;) {
      m_path = folderOf(m_target) + "/" + std::string(TEMPORARY_PREFIX) + randomLetters() +
               std::string(TEMPORARY_SUFFIX);
      const int file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
      if (file >= 0) {
        keepMode(file);
        return file;
      }
      if (errno != EEXIST && errno != EINTR)
        failReplacing("cannot create", m_target, errno);
    }
  }

  void keepMode(int file) const {
    struct stat info {};
    // Errors are ignored: some file systems have no modes.
    if (::stat(m_target.c_str(), &info) == 0)
      ::fchmod(file, info.st_mode & 07777);
  }

  std::string m_target;
  std::string m_path;
  OpenFile m_file;
  bool m_published = false;
};

/// Returns the other folders that symbolic links in this folder point to. A write through a link puts its
/// temporary there.
std::set<std::string> removeTemporariesIn(const std::string& folder) {
  finishLinkedFiles(folder);
  std::set<std::string> linked;
  for (const std::string& name : namesIn(folder)) {
    const std::string path = folder + "/" + name;
    if (isTemporaryName(name))
      ::unlink(path.c_str());
    else if (const std::string target = resolved(path); target != path)
      linked.insert(folderOf(target));
  }
  return linked;
}

/// Empty if the file can't be read to its end.
std::optional<std::string> contentOf(const String& path) {
  std::ifstream file = openToRead(path.toUTF8());
  std::string content;
  std::vector<char> buffer(BUFFER_SIZE);
  while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
    content.append(buffer.data(), static_cast<std::size_t>(file.gcount()));
  return file.eof() && !file.bad() ? std::optional(content) : std::nullopt;
}

enum class OtherNames { Keep, Leave };

/// Implements replaceFile for a resolved target.
void replace(const std::string& target, const std::function<void(std::ostream&)>& write,
             const std::function<void(const String& temporaryPath)>& check, OtherNames names) {
  Temporary temporary(target);
  temporary.fill(write);
  temporary.flushToDisk();
  if (check)
    check(String(temporary.path().c_str()));
  if (names == OtherNames::Keep && hasAnotherName(target))
    temporary.publishInto();
  else
    temporary.publish();
  flushFolderOf(target);
}

bool isSameFile(int file, const std::string& path) {
  struct stat left {};
  struct stat right {};
  return ::fstat(file, &left) == 0 && ::stat(path.c_str(), &right) == 0 && left.st_dev == right.st_dev &&
         left.st_ino == right.st_ino;
}

void copyTo(std::ostream& out, int file, const std::string& source) {
  std::vector<char> buffer(BUFFER_SIZE);
  for (;;) {
    const ssize_t count = uninterrupted([&] { return ::read(file, buffer.data(), buffer.size()); });
    if (count < 0)
      failReplacing("cannot read", source, errno);
    if (count == 0)
      return;
    out.write(buffer.data(), count);
  }
}

} // namespace

void replaceFile(const String& path, const std::function<void(std::ostream&)>& write,
                 const std::function<void(const String& temporaryPath)>& check) {
  replace(resolved(path.toUTF8()), write, check, OtherNames::Keep);
}

bool copyFileReplacing(const String& from, const String& to) {
  const std::string source = from.toUTF8();
  const OpenFile file(uninterrupted([&source] { return ::open(source.c_str(), O_RDONLY | O_CLOEXEC); }));
  if (file.get() < 0 && errno == ENOENT)
    return false;
  if (file.get() < 0)
    failReplacing("cannot read", source, errno);
  const std::string target = resolved(to.toUTF8());
  // A target that is a hard link to the source must become a separate file, or later changes would affect
  // both.
  const OtherNames names = isSameFile(file.get(), target) ? OtherNames::Leave : OtherNames::Keep;
  replace(
      target, [&](std::ostream& out) { copyTo(out, file.get(), source); }, {}, names);
  return true;
}

bool haveSameContent(const String& left, const String& right) {
  const std::optional<std::string> content = contentOf(left);
  return content && content == contentOf(right);
}

void removeLeftoverTemporaries(const String& folder) {
  const std::string path = folder.toUTF8();
  for (const std::string& linked : removeTemporariesIn(path))
    removeTemporariesIn(linked);
}

FilePresence filePresence(const String& path) {
  const std::string name = path.toUTF8();
  struct stat info {};
  if (::lstat(name.c_str(), &info) != 0)
    return errno == ENOENT ? FilePresence::Missing : FilePresence::Unusable;
  const bool readable =
      ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode) && ::access(name.c_str(), R_OK) == 0;
  return readable ? FilePresence::RegularFile : FilePresence::Unusable;
}

bool emptyFile(const String& path) {
  const std::string name = path.toUTF8();
  OpenFile file(uninterrupted([&name] { return ::open(name.c_str(), O_WRONLY | O_CLOEXEC); }));
  if (file.get() < 0 && errno == ENOENT)
    return false;
  if (file.get() < 0)
    return removeFile(path); // A read-only file can still be removed.
  int error = uninterrupted([&file] { return ::ftruncate(file.get(), 0); }) == 0 ? 0 : errno;
  if (error == 0 && uninterrupted([&file] { return FileOperations::current().sync(file.get()); }) != 0)
    error = errno;
  if (error == 0)
    error = file.close();
  if (error != 0)
    throw Exception(String(u"emptyFile - cannot empty ") + path + u": " + String(std::strerror(error)));
  return true;
}

bool removeFile(const String& path) {
  const std::string name = path.toUTF8();
  if (::unlink(name.c_str()) == 0)
    return true;
  if (errno == ENOENT)
    return false;
  throw Exception(String(u"removeFile - cannot remove ") + path + u": " + String(std::strerror(errno)));
}

} // namespace Tallymoor
