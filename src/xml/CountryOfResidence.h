#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <mutex>

namespace Tallymoor {

class XMLCountryOptions;

/// The country whose tax rules the user lives under, and the start of its financial year. Loads itself at the
/// first call of Instance; when no country is stored yet, the user is asked, once a run and never in a
/// background pass. The first call and all changes are made on the GUI thread under the big mutex; the values
/// may be read on any thread.
class CountryOfResidence {
public:
  static CountryOfResidence& Instance();
  /// Forgets the instance, so that the next call of Instance loads again. For shut-down and tests.
  static void destroyInstance();

  /// Asks the user for a country and keeps it. Cancelling changes nothing. Throws Exception.
  void change();
  /// Reads the country document and the settings again, as after a delivered update; never asks.
  void reload();

  String country() const;
  bool isAustralia() const;
  /// The day and the month count, the year does not.
  Date financialYearStart() const;
  /// The first day of the financial year that holds this day.
  Date financialYearOf(const Date& day) const;

private:
  CountryOfResidence();
  void askOnce();
  void changeToOther();
  void use(const String& country, const XMLCountryOptions& options);
  void set(const String& country, const Date& start);

  mutable std::mutex m_mutex; ///< guards all below
  String m_country;
  Date m_financialYearStart;
  bool m_asked = false;
};

} // namespace Tallymoor
