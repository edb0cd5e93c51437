#include "foundation/Constants.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

// Files, folders and the update service depend on these names.
TEST(ConstantsTest, NamesOnDiskAreUnchanged) {
  EXPECT_EQ(APP_NAME, u"Tallymoor");
  EXPECT_EQ(APP_EXE, u"Tallymoor.exe");
  EXPECT_EQ(VENDOR_NAME, u"Brindlecove");
  EXPECT_STREQ(VERSION_TEXT, "Brindlecove Tallymoor Version 1.3.1 (Build 510)");
  EXPECT_EQ(UPDATE_INSTALLER, u"UpdateInstaller");
  EXPECT_EQ(UPDATE_INSTALLER_EXE, u"UpdateInstaller.exe");
  EXPECT_EQ(TOOLKIT_DLL, u"FOXDLL");
  EXPECT_EQ(EXTENSIONS_DLL, u"FxEx");
  EXPECT_EQ(XML_DLL, u"xerces-c");
  EXPECT_EQ(BINARY_UPDATES_FILE, u"binaryupdates.xml");
  EXPECT_EQ(CONFIG_UPDATES_FILE, u"configupdates.xml");
  EXPECT_EQ(PORTFOLIOS_FILE, u"Portfolios.xml");
  EXPECT_EQ(CURRENT_PRICE_LOCATORS_FILE, u"CurrentPriceLocators.xml");
  EXPECT_EQ(CODE_SEARCH_LOCATORS_FILE, u"CodeSearchLocators.xml");
  EXPECT_EQ(HISTORICAL_PRICE_LOCATORS_FILE, u"HistoricalPricesLocators.xml");
  EXPECT_EQ(PRICE_CACHE_NAME, u"PriceCache");
  EXPECT_EQ(CAP_RECORD_FILE, u"CapRecord.xml");
  EXPECT_EQ(COUNTRY_CONFIG_FILE, u"CountryConfig.xml");
  EXPECT_EQ(SHARE_CACHE_DTD, u"Tallymoor Share Cache.dtd");
  EXPECT_EQ(RECORDS_DTD, u"Tallymoor Records.dtd");
  EXPECT_EQ(LOCATORS_DTD, u"Tallymoor HTML Locators.dtd");
  EXPECT_EQ(REPORT_DTD, u"Tallymoor Report.dtd");
  EXPECT_EQ(REPORT_XSL, u"Tallymoor Report.xsl");
  EXPECT_EQ(WATCHLIST_PREFIX, u"Watchlist ");
  EXPECT_STREQ(REPORT_DIR_MARK, "$REPORTDIR$");
  EXPECT_EQ(DEFAULT_COUNTRY_WITH_FRANKING, u"Australia");
}

} // namespace
} // namespace Tallymoor
