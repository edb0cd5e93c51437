#include "foundation/FileReplacement.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/FileSteps.h"
#include "foundation/LinkedFile.h"
#include "foundation/OpenFile.h"
#include "foundation/TemporaryName.h"
#include "foundation/Uninterrupted.h"
#include <algorithm>
#include <cerrno>
#include <climits>
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
#include <unicode/utf16.h>
#include <unistd.h>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::size_t BUFFER_SIZE = 64 * 1024;

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
    if (m_error == 0)
      m_error = writeWhole(m_file, pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
    return m_error == 0;
  }

  int m_file;
  int m_error = 0;
  std::vector<char> m_buffer;
};

/// Where the content belongs: behind a link, so that a file that the user keeps elsewhere stays there.
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
      failReplacing("cannot write", m_target, buffer.error() ? buffer.error() : EIO);
  }

  void flushToDisk() {
    if (uninterrupted([this] { return FileOperations::current().sync(m_file.get()); }) != 0)
      failReplacing("cannot flush", m_target, errno);
    if (const int error = m_file.close())
      failReplacing("cannot close", m_target, error);
  }

  /// Gives the content to all names of the target.
  void publishInto() {
    m_published = true; // or, where it can't be, it is needed at the next start
    writeIntoLinkedFile(m_path, m_target);
  }

  void publish() {
    if (uninterrupted(
            [this] { return FileOperations::current().rename(m_path.c_str(), m_target.c_str()); }) != 0)
      failReplacing("cannot replace", m_target, errno);
    m_published = true;
  }

private:
  /// A new file with the access rights of the old one; else it is the user's alone, whatever the folder is.
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
    // A file system without access rights refuses the change, and then there is nothing to keep.
    if (::stat(m_target.c_str(), &info) == 0)
      ::fchmod(file, info.st_mode & 07777);
  }

  std::string m_target;
  std::string m_path;
  OpenFile m_file;
  bool m_published = false;
};

/// Gives the other folders that links in this one lead to: what is written through a link has its temporary
/// there.
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

/// Nothing when the file can't be read to its end.
std::optional<std::string> contentOf(const String& path) {
  std::ifstream file = openToRead(path.toUTF8());
  std::string content;
  std::vector<char> buffer(BUFFER_SIZE);
  while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
    content.append(buffer.data(), static_cast<std::size_t>(file.gcount()));
  return file.eof() && !file.bad() ? std::optional(content) : std::nullopt;
}

enum class OtherNames { Keep, Leave };

/// The content, the check and the target's other names are those of replaceFile.
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

/// Copies the open file to the stream.
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
  // A copy that is only another name of its source would change with it.
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
    return removeFile(path); // one that may not be written may still be taken away
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

namespace {

constexpr std::u16string_view HEX = u"0123456789ABCDEF";

/// Half of a pair without the other half: UTF-8 has no bytes for it.
bool isLoneSurrogate(const String& text, std::size_t i) {
  UChar32 character = 0;
  U16_GET(text, 0, i, text.size(), character);
  return U_IS_SURROGATE(character);
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
  while (!first.empty() && (first.toUTF8().size() > bytes || U16_IS_LEAD(first.back())))
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
