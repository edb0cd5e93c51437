#pragma once
#include "support/TestHttpServer.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <string>

namespace Tallymoor {

/// A service named "Service" that answers in JSON, needs a key and was not tried, behind a real server. Its
/// document lies in the folder of the profile's sources.
class TestPriceService {
public:
  explicit TestPriceService(const TestProfile& profile) {
    std::filesystem::create_directories((profile.configFolder() + u"Sources").toUTF8());
    m_server.setFallback([this](const TestHttpServer::Request&) { return answer; });
    const std::string address =
        m_server.url("/prices?code={CODE}&amp;from={FROM:yyyy-MM-dd}&amp;to={TO:yyyy-MM-dd}&amp;key={KEY}");
    TestProfile::writeFile(
        profile.configFolder() + u"Sources/Service.xml",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PriceSource name=\"Service\" "
        "notTried=\"2026-11-22\"><Serves "
        "codes=\"*.AX\" currency=\"AUD\"/><Terms>For private use.</Terms><TryCode>KNOWN.AX</TryCode><History "
        "reader=\"json\"><Address>" +
            address +
            "</Address><Column type=\"Date\" at=\"$.days[*].date\"/><Column type=\"Close\" "
            "at=\"$.days[*].close\"/>"
            "<Column type=\"Split\" at=\"$.days[*].split\"/><Error "
            "at=\"$.error\"/></History></PriceSource>\n");
  }

  TestHttpServer& server() { return m_server; }

  /// Of each request. Not to be changed while one is under way.
  TestHttpServer::Response answer;

private:
  TestHttpServer m_server;
};

/// Pretends that the locator documents lead to the sample service.
inline void pretendSampleMarket(const TestProfile& profile) {
  for (const char* name :
       {"CurrentPriceLocators.xml", "HistoricalPricesLocators.xml", "CodeSearchLocators.xml"}) {
    const String path = profile.configFolder() + String(name);
    std::string text = TestProfile::readFile(path);
    for (std::size_t at = 0; (at = text.find("\"exchange\"", at)) != std::string::npos;)
      text.replace(at, std::string("\"exchange\"").size(), "\"sample\"");
    TestProfile::writeFile(path, text);
  }
}

} // namespace Tallymoor
