#pragma once
#include "foundation/String.h"

namespace Tallymoor {

inline const String APP_NAME = u"Tallymoor";
inline const String APP_EXE = u"Tallymoor.exe";
inline const String VENDOR_NAME = u"Brindlecove";
inline constexpr const char* VERSION_TEXT = "Brindlecove Tallymoor Version 1.3.1 (Build 510)";
inline const String UPDATE_INSTALLER = u"UpdateInstaller";
inline const String UPDATE_INSTALLER_EXE = u"UpdateInstaller.exe";
inline const String TOOLKIT_DLL = u"FOXDLL";
inline const String EXTENSIONS_DLL = u"FxEx";
inline const String XML_DLL = u"xerces-c";
inline const String BINARY_UPDATES_FILE = u"binaryupdates.xml";
inline const String CONFIG_UPDATES_FILE = u"configupdates.xml";
inline const String PORTFOLIOS_FILE = u"Portfolios.xml";
inline const String CURRENT_PRICE_LOCATORS_FILE = u"CurrentPriceLocators.xml";
inline const String CODE_SEARCH_LOCATORS_FILE = u"CodeSearchLocators.xml";
inline const String HISTORICAL_PRICE_LOCATORS_FILE = u"HistoricalPricesLocators.xml";
inline const String PRICE_CACHE_NAME = u"PriceCache";
inline const String CAP_RECORD_FILE = u"CapRecord.xml";
inline const String COUNTRY_CONFIG_FILE = u"CountryConfig.xml";
inline const String SHARE_CACHE_DTD = u"Tallymoor Share Cache.dtd";
inline const String RECORDS_DTD = u"Tallymoor Records.dtd";
inline const String LOCATORS_DTD = u"Tallymoor HTML Locators.dtd";
inline const String REPORT_DTD = u"Tallymoor Report.dtd";
inline const String REPORT_XSL = u"Tallymoor Report.xsl";
inline const String WATCHLIST_PREFIX = u"Watchlist ";
inline constexpr const char* REPORT_DIR_MARK = "$REPORTDIR$";
inline const String DEFAULT_COUNTRY_WITH_FRANKING = u"Australia";

} // namespace Tallymoor
