#include "foundation/FileReplacement.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/Uninterrupted.h"
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <memory>
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

// Short whatever the file is called, since a name may already have all the length that the file system
// allows.
constexpr std::string_view TEMPORARY_PREFIX = ".tallymoor-";
constexpr std::string_view TEMPORARY_SUFFIX = ".tmp";
constexpr std::size_t BUFFER_SIZE = 64 * 1024;

[[noreturn]] void fail(const char* what, const std::string& path, int reason) {
  throw Exception(String(u"replaceFile - ") + String(what) + u" " + String(path.c_str()) + u": " +
                  String(std::strerror(reason)));
}

/// An open file that is closed with its scope.
class OpenFile {
public:
  explicit OpenFile(int descriptor) : m_descriptor(descriptor) {}
  ~OpenFile() { close(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int get() const { return m_descriptor; }
  /// 0, or the error of closing, where some file systems tell late of a failed write.
  int close() {
    if (m_descriptor < 0)
      return 0;
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    return result == 0 || errno == EINTR ? 0 : errno;
  }

private:
  int m_descriptor;
};

/// Feeds a stream's bytes to a file and remembers the first error.
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
    const char* next = pbase();
    while (m_error == 0 && next < pptr()) {
      const ssize_t written =
          FileOperations::current().write(m_file, next, static_cast<size_t>(pptr() - next));
      if (written > 0)
        next += written;
      else if (written == 0)
        m_error = ENOSPC;
      else if (errno != EINTR)
        m_error = errno;
    }
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
    return m_error == 0;
  }

  int m_file;
  int m_error = 0;
  std::vector<char> m_buffer;
};

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos)
    return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// Where the content belongs: behind a link, so that a file that the user keeps elsewhere stays there.
std::string resolved(const std::string& path) {
  struct stat info {};
  if (::lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
    return path;
  const std::unique_ptr<char, void (*)(void*)> target(::realpath(path.c_str(), nullptr), std::free);
  return target ? std::string(target.get()) : path;
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

/// A temporary beside a file, removed with its scope unless it has been published.
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
      fail("cannot write", m_target, buffer.error() ? buffer.error() : EIO);
  }

  void flushToDisk() {
    if (uninterrupted([this] { return FileOperations::current().sync(m_file.get()); }) != 0)
      fail("cannot flush", m_target, errno);
    if (const int error = m_file.close())
      fail("cannot close", m_target, error);
  }

  void publish() {
    if (uninterrupted(
            [this] { return FileOperations::current().rename(m_path.c_str(), m_target.c_str()); }) != 0)
      fail("cannot replace", m_target, errno);
    m_published = true;
  }

private:
  /// A new file with the access rights of the old one, or those of any new file.
  int create() {
    for (;;) {
      m_path = folderOf(m_target) + "/" + std::string(TEMPORARY_PREFIX) + randomLetters() +
               std::string(TEMPORARY_SUFFIX);
      const int file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (file >= 0) {
        keepMode(file);
        return file;
      }
      if (errno != EEXIST && errno != EINTR)
        fail("cannot create", m_target, errno);
    }
  }

  void keepMode(int file) const {
    struct stat info {};
    // A file system without access rights refuses the change, and then there is nothing to keep.
    if (::stat(m_target.c_str(), &info) == 0)
      ::fchmod(file, info.st_mode & 07777);
  }

  std::string m_target;
  std::string m_path;
  OpenFile m_file;
  bool m_published = false;
};

int openFolder(const std::string& folder) {
  return uninterrupted([&folder] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
}

/// Makes the renaming itself last. The new file is in place by now and whole, so a folder that may not be
/// read, or a file system that can't flush one, is no failure; a disk that fails is, since the old file may
/// come back with the next start of the machine.
void flushFolderOf(const std::string& path) {
  OpenFile directory(openFolder(folderOf(path)));
  if (directory.get() < 0 && errno == EACCES)
    return;
  if (directory.get() < 0)
    fail("cannot open the folder of", path, errno);
  const int synced = uninterrupted([&] { return FileOperations::current().sync(directory.get()); });
  if (synced != 0 && errno != EINVAL && errno != EOPNOTSUPP)
    fail("cannot flush the folder of", path, errno);
  if (const int error = directory.close())
    fail("cannot close the folder of", path, error);
}

bool isTemporaryName(std::string_view name) {
  return name.starts_with(TEMPORARY_PREFIX) && name.ends_with(TEMPORARY_SUFFIX);
}

/// Gives the other folders that links in this one lead to: what is written through a link has its temporary
/// there.
std::set<std::string> removeTemporariesIn(const std::string& folder) {
  std::set<std::string> linked;
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(folder.c_str()), ::closedir);
  while (const dirent* entry = directory ? ::readdir(directory.get()) : nullptr) {
    const std::string path = folder + "/" + entry->d_name;
    if (isTemporaryName(entry->d_name))
      ::unlink(path.c_str());
    else if (const std::string target = resolved(path); target != path)
      linked.insert(folderOf(target));
  }
  return linked;
}

/// Nothing when the file can't be read to its end.
std::optional<std::string> contentOf(const String& path) {
  std::ifstream file = openToRead(path.toUTF8());
  std::string content;
  std::vector<char> buffer(BUFFER_SIZE);
  while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
    content.append(buffer.data(), static_cast<std::size_t>(file.gcount()));
  return file.eof() && !file.bad() ? std::optional(content) : std::nullopt;
}

} // namespace

void replaceFile(const String& path, const std::function<void(std::ostream&)>& write,
                 const std::function<void(const String& temporaryPath)>& check) {
  const std::string target = resolved(path.toUTF8());
  Temporary temporary(target);
  temporary.fill(write);
  temporary.flushToDisk();
  if (check)
    check(String(temporary.path().c_str()));
  temporary.publish();
  flushFolderOf(target);
}

bool copyFileReplacing(const String& from, const String& to) {
  const std::string source = from.toUTF8();
  const OpenFile file(uninterrupted([&source] { return ::open(source.c_str(), O_RDONLY | O_CLOEXEC); }));
  if (file.get() < 0 && errno == ENOENT)
    return false;
  if (file.get() < 0)
    fail("cannot read", source, errno);
  replaceFile(to, [&](std::ostream& out) {
    std::vector<char> buffer(BUFFER_SIZE);
    for (;;) {
      const ssize_t count = uninterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
      if (count < 0)
        fail("cannot read", source, errno);
      if (count == 0)
        return;
      out.write(buffer.data(), count);
    }
  });
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

bool removeFile(const String& path) {
  const std::string name = path.toUTF8();
  if (::unlink(name.c_str()) == 0)
    return true;
  if (errno == ENOENT)
    return false;
  throw Exception(String(u"removeFile - cannot remove ") + path + u": " + String(std::strerror(errno)));
}

namespace {

constexpr std::u16string_view HEX = u"0123456789ABCDEF";

bool isHighSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

/// Half of a pair without the other half: UTF-8 has no bytes for it.
bool isLoneSurrogate(const String& text, std::size_t i) {
  if (isHighSurrogate(text[i]))
    return i + 1 == text.size() || !isLowSurrogate(text[i + 1]);
  return isLowSurrogate(text[i]) && (i == 0 || !isHighSurrogate(text[i - 1]));
}

/// The least significant digits of a number, in hexadecimal.
template <typename Number>
String hexDigits(Number number, int digits) {
  String text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
    text.push_back(HEX[static_cast<std::size_t>(number >> shift) & 15]);
  return text;
}

String escapedForFile(const String& name) {
  String escaped;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char16_t unit = name[i];
    // "%" too, or two names could meet in one.
    if (unit < 0x20 || unit == 0x7F || unit == u'/' || unit == u'%')
      escaped += u'%' + hexDigits(unit, 2);
    else if (isLoneSurrogate(name, i))
      escaped += u"%u" + hexDigits(unit, 4);
    else
      escaped.push_back(unit);
  }
  return escaped;
}

/// FNV-1a in 128 bits: two names that a user has never meet in it.
String fingerprintOf(const String& text) {
  __extension__ using Hash = unsigned __int128;
  constexpr Hash PRIME = (Hash(1) << 88) + 0x13B;
  Hash hash = (Hash(0x6C62272E07BB0142) << 64) + 0x62B821756295C58D;
  for (const char16_t unit : text)
    for (const unsigned byte : {unit & 0xFFu, unsigned(unit >> 8)}) {
      hash ^= byte;
      hash *= PRIME;
    }
  return hexDigits(hash, 32);
}

/// As much of the beginning as takes no more bytes, with no character cut in two.
String firstBytes(const String& text, std::size_t bytes) {
  String first = text.substr(0, bytes);
  while (!first.empty() && (first.toUTF8().size() > bytes || isHighSurrogate(first.back())))
    first.pop_back();
  return first;
}

} // namespace

String fileNameFor(const String& code, std::size_t bytesBeside) {
  const std::size_t room = NAME_MAX - std::min<std::size_t>(bytesBeside, NAME_MAX);
  const String name = escapedForFile(code);
  if (name.toUTF8().size() <= room)
    return name;
  // No other name holds "%~".
  const String tail = u"%~" + fingerprintOf(code);
  return firstBytes(name, room - std::min(room, tail.size())) + tail;
}

} // namespace Tallymoor
