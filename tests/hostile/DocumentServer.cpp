#include "DocumentServer.h"
#include "TestPaths.h"
#include "support/TestHttpServer.h"
#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {

const char* const DELIVERED_DOCUMENTS[5] = {"CurrentPriceLocators.xml", "CodeSearchLocators.xml",
                                            "HistoricalPricesLocators.xml", "CountryConfig.xml",
                                            "Tallymoor Report.xsl"};

namespace {

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string listOffering(const std::string& name) {
  return "<VersionsAvailable><Component FileName=\"" + name +
         "\" Major=\"9\" Minor=\"0\" Patch=\"0\"/></VersionsAvailable>";
}

TestHttpServer::Response answer(const TestHttpServer::Request& request) {
  const std::size_t pathAt = std::min(request.target.find('/', 1), request.target.size());
  const std::size_t queryAt = std::min(request.target.find('?'), request.target.size());
  const std::string kind = request.target.substr(1, pathAt - 1);
  const std::string document = request.target.substr(pathAt, queryAt - pathAt);
  const std::string query = request.target.substr(std::min(queryAt + 1, request.target.size()));
  if (kind.starts_with("delivered-") && query == "filename=configupdates.xml")
    return {200, listOffering(DELIVERED_DOCUMENTS[kind.back() - '0'])};
  if (kind == "advert" && query.starts_with("image="))
    return {200, contentOf(std::string(TALLYMOOR_SAMPLES) + "/adverts/brokers.gif")};
  return {200, contentOf(document)};
}

} // namespace

DocumentServer::DocumentServer() {
  int port[2];
  int living[2];
  if (::pipe(port) != 0 || ::pipe(living) != 0)
    throw std::runtime_error("no pipe for the server");
  m_process = ::fork();
  if (m_process == 0) {
    ::close(living[1]);
    serve(port[1], living[0]);
  }
  ::close(port[1]);
  ::close(living[0]);
  m_living = living[1];
  if (::read(port[0], &m_port, sizeof m_port) != sizeof m_port)
    throw std::runtime_error("the server did not start");
  ::close(port[0]);
}

DocumentServer::~DocumentServer() {
  ::close(m_living);
  ::waitpid(m_process, nullptr, 0);
}

void DocumentServer::serve(int reportPort, int waitForEnd) {
  TestHttpServer server;
  server.setFallback(answer);
  const int port = server.port();
  if (::write(reportPort, &port, sizeof port) == sizeof port) {
    char byte;
    while (::read(waitForEnd, &byte, 1) > 0) {
    }
  }
  server.stop();
  ::_exit(0);
}

} // namespace Tallymoor
