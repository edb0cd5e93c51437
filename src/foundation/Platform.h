#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <memory>

namespace Tallymoor {

/// The one door to what the operating system supplies beyond the toolkit. Stateless for its callers; all
/// operations are safe on any thread. Separators in paths are "/".
class Platform {
public:
  virtual ~Platform();

  /// The product's folder for this user, without a trailing separator. It and its folders are made when they
  /// are missing, for this user alone. Throws Exception that names the folder that can't be made.
  virtual String userHomeDirectory(const String& product) = 0;
  /// The date in the user's short form.
  virtual String shortDateFormat(const Date& date) = 0;
  /// Fills the date and returns true when the text is a valid short date; otherwise leaves it alone.
  virtual bool parseShortDate(const String& text, Date& date) = 0;
  /// The same for a date as a person types it (see TypedDate), the short form among others.
  virtual bool readTypedDate(const String& text, Date& date) = 0;
  /// Two decimals in the user's currency form.
  virtual String currencyFormat(double amount) = 0;
  /// Reads an amount as a person types it in the user's locale: currency signs and separators are ignored, a
  /// point is decimal, and where the locale's decimal sign is a comma, a single comma with no point is
  /// decimal too.
  virtual double parseAmount(const String& text) = 0;
  /// Opens a path, web address or mail link with the desktop, or starts a program; true when that could be
  /// started.
  virtual bool openDocument(const String& target) = 0;
  /// Milliseconds on a monotonic clock, wrapping at 32 bits.
  virtual std::uint32_t tickCount() = 0;
  /// Throws Exception when the file has no version.
  virtual void getFileVersion(const String& path, unsigned& major, unsigned& minor, unsigned& patch,
                              unsigned& build) = 0;
  /// The folder of default documents beside the running program, without a trailing separator.
  virtual String installedDefaultsDirectory() = 0;

  /// The platform of this process; a LinuxPlatform unless a test has put another in its place.
  static Platform& Instance();
  /// For tests: replaces the platform; null goes back to a new LinuxPlatform at the next call.
  static void setInstance(std::unique_ptr<Platform> platform);
};

/// The program's folders for this user, each with a trailing separator.
String dataDirectory(Platform& platform, const String& product);
String configDirectory(Platform& platform, const String& product);
String cacheDirectory(Platform& platform, const String& product);
String reportDirectory(Platform& platform, const String& product);

/// Copies the default documents that are missing from the user's Config and Report folders; a document that
/// is there is never touched. Throws Exception when a document can't be written.
void installMissingDefaults(Platform& platform, const String& product);

} // namespace Tallymoor
