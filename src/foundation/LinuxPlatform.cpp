#include "foundation/LinuxPlatform.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FaultReport.h"
#include "foundation/FileVersion.h"
#include "foundation/KeptTexts.h"
#include "foundation/MoneyFormat.h"
#include "foundation/ProgramStart.h"
#include "foundation/ShortDatePicture.h"
#include "foundation/TypedDate.h"
#include "foundation/Uninterrupted.h"
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

namespace fs = std::filesystem;

constexpr const char* FALLBACK_LOCALE = "en_US";

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// The locale's name without encoding and modifier, for ICU.
std::string plainLocale(const std::string& name) {
  const std::string plain = name.substr(0, name.find_first_of(".@"));
  return plain.empty() || plain == "C" || plain == "POSIX" ? FALLBACK_LOCALE : plain;
}

/// The name of the user's locale for a category (LC_TIME, for example), in the order of POSIX; empty if there
/// is none.
std::string localeNameFor(const std::string& wanted, const char* category) {
  if (!wanted.empty())
    return wanted;
  for (const char* variable : {"LC_ALL", category, "LANG"})
    if (std::string name = environment(variable); !name.empty())
      return name;
  return {};
}

std::string localeFor(const std::string& wanted, const char* category) {
  const std::string name = localeNameFor(wanted, category);
  return name.empty() ? FALLBACK_LOCALE : plainLocale(name);
}

/// False for "C" and for a language alone: the region is guessed then.
bool namesRegion(const std::string& localeName) {
  return localeName.find('_') != std::string::npos;
}

std::string homeFolder() {
  std::string home = environment("HOME");
  if (!home.empty())
    return home;
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found && found->pw_dir ? found->pw_dir : "";
}

/// Empty if the environment sets no folder. A relative XDG_DATA_HOME is ignored: the
/// base directories of desktops must be absolute.
std::string userDataHome() {
  std::string data = environment("XDG_DATA_HOME");
  if (!data.empty() && data[0] == '/')
    return data;
  const std::string home = homeFolder();
  return home.empty() ? "" : home + "/.local/share";
}

std::string folderOfThisProgram() {
  std::error_code failed;
  return fs::read_symlink("/proc/self/exe", failed).parent_path();
}

std::string baseName(const std::string& path) {
  return fs::path(path).filename();
}

bool isFolder(const std::string& path) {
  std::error_code failed;
  return fs::is_directory(path, failed);
}

/// Throws Exception with the step, the folder and the system's reason.
[[noreturn]] void failMaking(const std::string& path, const char16_t* step, int reason) {
  throw Exception(String(kept::MAKE_FOLDERS) + step +
                  u"\nYour records belong into your home folder, and no folder can be made there:\n" +
                  String(path.c_str()) + u": " + String(std::strerror(reason)));
}

/// Creates a folder with mode 0700. Accepts a folder that another process or thread creates meanwhile. Fails
/// on a file or a dangling link at this path.
void makeFolder(const std::string& path, const char16_t* step) {
  if (isFolder(path) || ::mkdir(path.c_str(), 0700) == 0)
    return;
  const int reason = errno;
  if (reason != EEXIST || !isFolder(path))
    failMaking(path, step, reason == EEXIST ? ENOTDIR : reason);
}

void makeFolders(const std::string& path, const char16_t* step) {
  if (isFolder(path))
    return;
  const std::string parent = fs::path(path).parent_path();
  if (!parent.empty() && parent.size() < path.size())
    makeFolders(parent, step);
  makeFolder(path, step);
}

/// Maps a file into memory for a scope.
class MappedFile {
public:
  explicit MappedFile(const std::string& path) {
    const int file = uninterrupted([&path] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); });
    struct stat info {};
    if (file >= 0 && ::fstat(file, &info) == 0 && S_ISREG(info.st_mode)) {
      m_readable = true;
      m_size = static_cast<std::size_t>(info.st_size);
      if (m_size > 0)
        m_bytes = ::mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, file, 0);
    }
    if (file >= 0)
      ::close(file);
    if (m_bytes == MAP_FAILED) {
      m_bytes = nullptr;
      m_readable = false;
    }
  }
  ~MappedFile() {
    if (m_bytes)
      ::munmap(m_bytes, m_size);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  bool readable() const { return m_readable; }
  std::string_view bytes() const {
    return m_bytes ? std::string_view(static_cast<const char*>(m_bytes), m_size) : std::string_view();
  }

private:
  bool m_readable = false;
  std::size_t m_size = 0;
  void* m_bytes = nullptr;
};

} // namespace

LinuxPlatform::LinuxPlatform(const LinuxPlatformOptions& options)
    : m_dataHome(options.dataHome.empty() ? userDataHome() : options.dataHome),
      m_programFolder(options.programFolder.empty() ? folderOfThisProgram() : options.programFolder),
      m_opener(options.opener.empty() ? "xdg-open" : options.opener),
      m_dateLocale(localeFor(options.locale, "LC_TIME")),
      m_picture(std::make_unique<ShortDatePicture>(
          options.datePicture.empty() ? ShortDatePicture::ofLocale(m_dateLocale)
                                      : ShortDatePicture(String(options.datePicture.c_str())))),
      m_money(std::make_unique<MoneyFormat>(localeFor(options.locale, "LC_MONETARY"),
                                            namesRegion(localeNameFor(options.locale, "LC_MONETARY")))) {
  reportFaults();
}

LinuxPlatform::~LinuxPlatform() = default;

String LinuxPlatform::userHomeDirectory(const String& product) {
  if (m_dataHome.empty())
    throw Exception(String(kept::MAKE_FOLDERS) + kept::NO_HOME_FOLDER +
                    u"\nThe environment names no home folder.");
  makeFolders(m_dataHome, kept::NO_HOME_FOLDER);
  const std::string companyFolder = m_dataHome + "/" + VENDOR_NAME.toUTF8();
  makeFolder(companyFolder, kept::NO_VENDOR_FOLDER);
  const std::string productFolder = companyFolder + "/" + product.toUTF8();
  for (const char* folder : {"", "/Config", "/Cache", "/Data", "/Report"})
    makeFolder(productFolder + folder, kept::NO_PRODUCT_FOLDER);
  return String(productFolder.c_str());
}

String LinuxPlatform::shortDateFormat(const Date& date) {
  if (date.year() < 1 || date.year() > 9999)
    throw Exception(String(kept::NO_SUCH_DAY) + date.toString(DATE_DISPLAY_DMY));
  return m_picture->format(date);
}

bool LinuxPlatform::parseShortDate(const String& text, Date& date) {
  return m_picture->parse(text, date);
}

bool LinuxPlatform::readTypedDate(const String& text, Date& date) {
  if (m_picture->parse(text.trimmed(), date))
    return true;
  std::call_once(m_typedDateMade,
                 [this] { m_typedDate = std::make_unique<const TypedDate>(*m_picture, m_dateLocale); });
  return m_typedDate->read(text, date);
}

String LinuxPlatform::currencyFormat(double amount) {
  return m_money->format(amount);
}

String LinuxPlatform::currencyCode() {
  return m_money->currencyCode();
}

double LinuxPlatform::parseAmount(const String& text) {
  return m_money->read(text);
}

bool LinuxPlatform::openDocument(const String& target) {
  const std::string name = target.toUTF8();
  if (name.empty() || name[0] == '-')
    return false;
  if (String(baseName(name).c_str()) == UPDATE_INSTALLER_EXE) {
    const std::string program = name.find('/') == std::string::npos ? "./" + name : name;
    return isTrustedProgram(program) && startProgram(program, {});
  }
  return startProgram(m_opener, {name});
}

std::uint32_t LinuxPlatform::tickCount() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                                    static_cast<std::uint64_t>(now.tv_nsec) / 1000000u);
}

void LinuxPlatform::getFileVersion(const String& path, unsigned& major, unsigned& minor, unsigned& patch,
                                   unsigned& build) {
  const std::string name = path.toUTF8();
  const MappedFile file(name);
  if (!file.readable())
    throw Exception(String(kept::UNREADABLE_PROGRAM_FILE) + path);
  std::optional<FileVersion> version = versionInImage(file.bytes());
  if (!version)
    version = versionInName(baseName(name));
  if (!version)
    throw Exception(String(kept::NO_FILE_VERSION) + path);
  major = (*version)[0];
  minor = (*version)[1];
  patch = (*version)[2];
  build = (*version)[3];
}

String LinuxPlatform::installedDefaultsDirectory() {
  return String((m_programFolder + "/defaults").c_str());
}

} // namespace Tallymoor
