#pragma once
#include "market/TallymoorInternet.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/InstalledFolder.h"
#include "support/MarketFixture.h"
#include "support/MessageOf.h"
#include "support/updates/TestUpdateService.h"
#include "updates/UpdateFolders.h"
#include "updates/UpdateSearch.h"

namespace Tallymoor {

/// An installed copy with its documents, all of version 5, and an update service.
class UpdatesTest : public ::testing::Test {
protected:
  using Names = std::vector<std::string>;

  UpdatesTest() {
    for (const char* name : LOCATORS)
      writeDocument(name, locators(name, 5));
    writeDocument("CountryConfig.xml", countries(5));
    TestProfile::writeFile(stylesheetPath(), stylesheet(5));
  }

  static constexpr const char* LOCATORS[] = {"CurrentPriceLocators.xml", "CodeSearchLocators.xml",
                                             "HistoricalPricesLocators.xml"};

  TestProfile& profile() { return m_profile; }
  MarketFixture& market() { return m_market; }
  InstalledFolder& folder() { return m_folder; }
  TestUpdateService& service() { return m_service; }
  FakeUserInteraction& user() { return m_user; }

  String documentPath(const char* name) const { return m_profile.configFolder() + String(name); }
  String stylesheetPath() const { return m_profile.reportFolder() + u"Tallymoor Report.xsl"; }
  void writeDocument(const char* name, const std::string& content) {
    TestProfile::writeFile(documentPath(name), content);
  }
  std::string document(const char* name) const { return TestProfile::readFile(documentPath(name)); }

  /// A locator document for the fixture's exchange with this version.
  std::string locators(const char* name, int version) const {
    std::string text = document(name);
    const std::size_t at = text.find("version=\"", text.find("Locators ")) + 9;
    return text.replace(at, text.find('"', at) - at, std::to_string(version));
  }
  static std::string countries(int version) {
    return "<CountryOptions version=\"" + std::to_string(version) +
           "\"><CountryOption Name=\"Australia\" FinYearStart=\"1/" + std::to_string(version) +
           "/2000\"/></CountryOptions>";
  }
  static std::string stylesheet(int version) {
    return "<xsl:stylesheet xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" version=\"" +
           std::to_string(version) + "\"><xsl:template match=\"/\"/></xsl:stylesheet>";
  }

  /// Serves a newer program file under this name, signed.
  void offerProgramFile(const std::string& name, const std::string& version, const std::string& content) {
    m_service.offerProgramFiles({{name, version}});
    m_service.serveSigned(name, content);
  }
  String configFailure(bool checkOnly = false) {
    Updates updates(m_service.settings());
    return messageOf([&] { updates.getConfigUpdates(checkOnly); });
  }
  String binaryFailure(bool checkOnly = false) {
    Updates updates(m_service.settings());
    return messageOf([&] { updates.getBinaryUpdates(checkOnly); });
  }
  bool binariesNewer() { return Updates(m_service.settings()).getBinaryUpdates(true); }
  bool documentsNewer() { return Updates(m_service.settings()).getConfigUpdates(true); }

private:
  TestProfile m_profile;
  FakeUserInteraction m_user;
  MarketFixture m_market;
  GatewayScope m_gateway;
  InstalledFolder m_folder{m_profile};
  TestUpdateService m_service;
};

} // namespace Tallymoor
