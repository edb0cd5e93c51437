// A pass over 300 codes at a source on this machine that takes 60 ms for an answer, compared with fetching
// the same pages by libcurl one at a time over a single connection. With six requests at once the least ratio
// is 1/6.
#include "Ratio.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/TestHttpServer.h"
#include "support/TestProfile.h"
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <curl/curl.h>
#include <string>
#include <thread>

namespace Tallymoor {
namespace {

constexpr int CODES = 300;
constexpr std::chrono::milliseconds ANSWER_TIME{60};
constexpr double PASS_LIMIT = 0.2;
constexpr const char* PAGE =
    "<html><body><table><tr><th>Last Trade:</th><td><b>12.34</b></td></tr></table></body></html>";

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

String codeOf(int number) {
  return u"C" + String::fromLong(number);
}

/// The shipped locators, with the address of this server.
void writeLocators(const TestProfile& profile, const TestHttpServer& server) {
  for (const char* const name :
       {"CurrentPriceLocators.xml", "HistoricalPricesLocators.xml", "CodeSearchLocators.xml"}) {
    std::string text = TestProfile::readFile(String(TALLYMOOR_DEFAULTS) + String(name));
    const std::string shipped = "http://127.0.0.1:8317";
    for (std::size_t at; (at = text.find(shipped)) != std::string::npos;)
      text.replace(at, shipped.size(), server.url(""));
    TestProfile::writeFile(profile.configFolder() + String(name), text);
  }
}

double passSeconds() {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  const auto start = std::chrono::steady_clock::now();
  updater.runPass();
  const double seconds = secondsSince(start);
  for (int i = 0; i < CODES; ++i)
    if (updater.getCurrentPrice(codeOf(i)) != 12.34)
      std::abort();
  return seconds;
}

std::size_t countBytes(char*, std::size_t size, std::size_t count, void* bytes) {
  *static_cast<std::size_t*>(bytes) += size * count;
  return size * count;
}

double curlSeconds(const TestHttpServer& server) {
  CURL* const handle = curl_easy_init();
  std::size_t bytes = 0;
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &countBytes);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, &bytes);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < CODES; ++i) {
    const std::string address = server.url("/quote?s=" + codeOf(i).toUTF8());
    curl_easy_setopt(handle, CURLOPT_URL, address.c_str());
    if (curl_easy_perform(handle) != CURLE_OK)
      std::abort();
  }
  const double seconds = secondsSince(start);
  curl_easy_cleanup(handle);
  if (bytes != CODES * std::string(PAGE).size())
    std::abort();
  return seconds;
}

bool measure() {
  const TestProfile profile("en_AU", Date(2026, 3, 3));
  TestHttpServer server;
  server.setFallback([](const TestHttpServer::Request&) {
    std::this_thread::sleep_for(ANSWER_TIME);
    return TestHttpServer::Response{200, PAGE};
  });
  writeLocators(profile, server);
  const GatewayScope scope;
  for (int i = 0; i < CODES; ++i) {
    StockNames::remember(codeOf(i), u"Company " + codeOf(i)); // otherwise the pass searches for it
    TallymoorInternet::Instance().priceUpdater().addCode(codeOf(i));
  }
  const double reference = curlSeconds(server);
  const double pass = passSeconds();
  std::printf("a pass of %d codes: %.2f s, one at a time: %.2f s\n", CODES, pass, reference);
  return Bench::printRatio("price_pass", pass / reference, PASS_LIMIT);
}

} // namespace
} // namespace Tallymoor

int main() {
  return Tallymoor::measure() ? 0 : 1;
}
