#include "entry/CountryNames.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "xml/PortfolioRecords.h"
#include "xml/SmallDocuments.h"

namespace Tallymoor {

namespace {

/// A document that can't be read offers none.
std::set<String> countriesOfResidence() {
  std::set<String> names;
  try {
    XMLCountryOptions options;
    options.decode(configDirectory(Platform::Instance(), APP_NAME) + COUNTRY_CONFIG_FILE);
    for (std::size_t i = 0; i < options.numSubElements(u"CountryOptions"); ++i)
      names.insert(options.subElement(u"CountryOptions", i).attribute(u"Name"));
  } catch (const Exception&) {
    names.clear();
  }
  return names;
}

} // namespace

std::set<String> likelyCountries(const SharePortfolioUser* portfolio) {
  std::set<String> names = countriesOfResidence();
  if (portfolio)
    for (const XMLDividendEvent& dividend : portfolio->portfolio().dividends())
      names.insert(dividend.foreignDividend());
  names.erase(String());
  return names;
}

} // namespace Tallymoor
