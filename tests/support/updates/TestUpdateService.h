#pragma once
#include "support/TestHttpServer.h"
#include "updates/UpdateSettings.h"
#include <map>
#include <memory>
#include <openssl/evp.h>
#include <string>
#include <vector>

namespace Tallymoor {

/// An update service on the loopback interface, with a key pair of its own.
class TestUpdateService {
public:
  struct Component {
    std::string fileName;
    std::string version; ///< "major.minor.patch"
  };

  TestUpdateService();

  TestHttpServer& server() { return m_server; }
  /// Those of a build that knows this service and its key; the thread looks at once, then every three hours.
  UpdateSettings settings() const;

  /// What a list of the service has on offer.
  void offer(const std::string& list, const std::vector<Component>& components);
  void offerDocuments(const std::vector<Component>& components) { offer("configupdates.xml", components); }
  void offerProgramFiles(const std::vector<Component>& components) { offer("binaryupdates.xml", components); }
  /// Answers to the request for a file.
  void serve(const std::string& fileName, TestHttpServer::Response response);
  void serve(const std::string& fileName, const std::string& content);
  /// Serves a file and the signature for it.
  void serveSigned(const std::string& fileName, const std::string& content);
  std::string signatureOf(const std::string& fileName, const std::string& content) const;
  /// Names that were asked for, in order.
  std::vector<std::string> asked() const;

private:
  std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> m_key;
  TestHttpServer m_server;
};

} // namespace Tallymoor
