#pragma once
#include "foundation/Platform.h"
#include <memory>
#include <mutex>
#include <string>

namespace Tallymoor {

class MoneyFormat;
class ShortDatePicture;
class TypedDate;

/// Where a LinuxPlatform finds what belongs to the user. An empty text stands for what the environment says.
struct LinuxPlatformOptions {
  std::string dataHome; ///< parent of the company folder; else $XDG_DATA_HOME, else ~/.local/share
  std::string locale;   ///< such as "en_AU", for dates and money; else LC_ALL, LC_TIME or LC_MONETARY, LANG
  std::string datePicture; ///< short date form in the letters d, dd, M, MM, yy, yyyy; else that of the locale
  std::string programFolder; ///< folder of the running program; else that of its image
  std::string opener;        ///< program that opens documents; else xdg-open
};

/// The platform on a freedesktop system. All that it knows of the environment is read at its construction,
/// which also sees to it that processor faults are reported.
class LinuxPlatform : public Platform {
public:
  explicit LinuxPlatform(const LinuxPlatformOptions& options = {});
  ~LinuxPlatform() override;

  String userHomeDirectory(const String& product) override;
  String shortDateFormat(const Date& date) override;
  bool parseShortDate(const String& text, Date& date) override;
  bool readTypedDate(const String& text, Date& date) override;
  String currencyFormat(double amount) override;
  double parseAmount(const String& text) override;
  bool openDocument(const String& target) override;
  std::uint32_t tickCount() override;
  void getFileVersion(const String& path, unsigned& major, unsigned& minor, unsigned& patch,
                      unsigned& build) override;
  String installedDefaultsDirectory() override;

private:
  const std::string m_dataHome;
  const std::string m_programFolder;
  const std::string m_opener;
  const std::string m_dateLocale;
  std::unique_ptr<const ShortDatePicture> m_picture;
  std::once_flag m_typedDateMade; ///< at the first use: it takes ICU some milliseconds
  std::unique_ptr<const TypedDate> m_typedDate;
  std::unique_ptr<const MoneyFormat> m_money;
};

} // namespace Tallymoor
