#pragma once
#include "foundation/Platform.h"
#include <memory>
#include <mutex>
#include <string>

namespace Tallymoor {

class MoneyFormat;
class ShortDatePicture;
class TypedDate;

/// Values that replace those of the environment. An empty member means the default.
struct LinuxPlatformOptions {
  std::string dataHome;      ///< Parent of the vendor's folder. Default: $XDG_DATA_HOME, then ~/.local/share.
  std::string locale;        ///< For dates and money: "en_AU". Default: LC_ALL, LC_TIME or LC_MONETARY, LANG.
  std::string datePicture;   ///< Short date form; see ShortDatePicture. Default: from the locale.
  std::string programFolder; ///< Folder of the running program. Default: from its image.
  std::string opener;        ///< Program that opens documents. Default: xdg-open.
};

/// The platform on a freedesktop system. The constructor reads the environment and calls reportFaults().
class LinuxPlatform : public Platform {
public:
  explicit LinuxPlatform(const LinuxPlatformOptions& options = {});
  ~LinuxPlatform() override;

  String userHomeDirectory(const String& product) override;
  String shortDateFormat(const Date& date) override;
  bool parseShortDate(const String& text, Date& date) override;
  bool readTypedDate(const String& text, Date& date) override;
  String currencyFormat(double amount) override;
  String currencyCode() override;
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
  std::once_flag m_typedDateMade; ///< Made on first use, since ICU takes milliseconds.
  std::unique_ptr<const TypedDate> m_typedDate;
  std::unique_ptr<const MoneyFormat> m_money;
};

} // namespace Tallymoor
