#pragma once
#include "support/TestHttpServer.h"
#include "updates/UpdateSettings.h"
#include <map>
#include <memory>
#include <openssl/evp.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// An update service on the loopback interface with its own key pair.
class TestUpdateService {
public:
  struct Component {
    std::string fileName;
    std::string version; ///< "major.minor.patch"
  };

  TestUpdateService();

  TestHttpServer& server() { return m_server; }
  /// Settings of a build that knows this service and its key. The thread checks at once, then every three
  /// hours.
  UpdateSettings settings() const;

  /// Sets the content of an update list.
  void offer(const std::string& list, const std::vector<Component>& components);
  void offerDocuments(const std::vector<Component>& components) { offer("configupdates.xml", components); }
  void offerProgramFiles(const std::vector<Component>& components) { offer("binaryupdates.xml", components); }
  /// Sets the response to a request for a file.
  void serve(const std::string& fileName, TestHttpServer::Response response);
  void serve(const std::string& fileName, const std::string& content);
  /// Serves a file and its signature.
  void serveSigned(const std::string& fileName, const std::string& content);
  std::string signatureOf(const std::string& fileName, const std::string& content) const;
  /// Requested names, in order.
  std::vector<std::string> asked() const;

private:
  std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> m_key;
  TestHttpServer m_server;
};

} // namespace Tallymoor
