#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <memory>

namespace Tallymoor {

/// Operating system services not covered by the toolkit. All operations are thread-safe. Paths use "/".
class Platform {
public:
  virtual ~Platform();

  /// The product's folder for this user, without a trailing separator. Creates it and its subfolders with
  /// mode 0700 if missing. Throws Exception with the folder's name on failure.
  virtual String userHomeDirectory(const String& product) = 0;
  /// Formats the date in the user's short form.
  virtual String shortDateFormat(const Date& date) = 0;
  /// Reads a date in the short form. Returns false and leaves the date unchanged if the text is invalid.
  virtual bool parseShortDate(const String& text, Date& date) = 0;
  /// Like parseShortDate, but for typed dates; see TypedDate. Accepts the short form too.
  virtual bool readTypedDate(const String& text, Date& date) = 0;
  /// Formats an amount in the user's currency form with two decimals.
  virtual String currencyFormat(double amount) = 0;
  /// The ISO 4217 code of the currency of those amounts; empty if there is none.
  virtual String currencyCode() { return {}; }
  /// Reads a typed amount in the user's locale; see MoneyFormat::read.
  virtual double parseAmount(const String& text) = 0;
  /// Opens a path, web address or mail link with the desktop, or starts a program. True if that could be
  /// started.
  virtual bool openDocument(const String& target) = 0;
  /// Milliseconds of a monotonic clock; wraps at 32 bits.
  virtual std::uint32_t tickCount() = 0;
  /// Throws Exception if the file has no version.
  virtual void getFileVersion(const String& path, unsigned& major, unsigned& minor, unsigned& patch,
                              unsigned& build) = 0;
  /// The folder of the default documents next to the program, without a trailing separator.
  virtual String installedDefaultsDirectory() = 0;

  /// The platform of this process. A LinuxPlatform unless a test has replaced it.
  static Platform& Instance();
  /// For tests: replaces the platform. Null restores a new LinuxPlatform at the next call.
  static void setInstance(std::unique_ptr<Platform> platform);
};

/// The program's folders for this user, each with a trailing separator.
String dataDirectory(Platform& platform, const String& product);
String configDirectory(Platform& platform, const String& product);
String cacheDirectory(Platform& platform, const String& product);
String reportDirectory(Platform& platform, const String& product);

/// Copies default documents missing from the user's Config and Report folders. Never changes an existing
/// document. Throws Exception if a document can't be written.
void installMissingDefaults(Platform& platform, const String& product);

} // namespace Tallymoor
