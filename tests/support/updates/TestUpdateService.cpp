#include "support/updates/TestUpdateService.h"
#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {

namespace {

const std::string PATH = "/updates/update.php?filename=";

/// URL-encoded as the client sends it.
std::string encoded(const std::string& fileName) {
  std::string text;
  for (const char c : fileName)
    text += c == ' ' ? std::string("%20") : std::string(1, c);
  return text;
}

std::string hex(const unsigned char* bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", bytes[i]);
    text += digits.data();
  }
  return text;
}

} // namespace

TestUpdateService::TestUpdateService()
    : m_key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), EVP_PKEY_free) {
  offerDocuments({});
  offerProgramFiles({});
}

UpdateSettings TestUpdateService::settings() const {
  std::array<unsigned char, 32> key{};
  std::size_t size = key.size();
  EXPECT_EQ(1, EVP_PKEY_get_raw_public_key(m_key.get(), key.data(), &size));
  UpdateSettings settings;
  settings.queryBase = String(m_server.url("/updates/update.php?").c_str());
  settings.publicKey = hex(key.data(), size);
  settings.startDelay = 0;
  return settings;
}

void TestUpdateService::offer(const std::string& list, const std::vector<Component>& components) {
  std::string document = "<VersionsAvailable>";
  for (const Component& component : components) {
    std::istringstream version(component.version);
    std::string major, minor, patch;
    std::getline(version, major, '.');
    std::getline(version, minor, '.');
    std::getline(version, patch, '.');
    document += "<Component FileName=\"" + component.fileName + "\" Major=\"" + major + "\" Minor=\"" +
                minor + "\" Patch=\"" + patch + "\"/>";
  }
  serve(list, document + "</VersionsAvailable>");
}

void TestUpdateService::serve(const std::string& fileName, TestHttpServer::Response response) {
  m_server.route(PATH + encoded(fileName), std::move(response));
}

void TestUpdateService::serve(const std::string& fileName, const std::string& content) {
  serve(fileName, TestHttpServer::Response{200, content, "application/octet-stream", {}, -1});
}

void TestUpdateService::serveSigned(const std::string& fileName, const std::string& content) {
  serve(fileName, content);
  serve(fileName + ".sig", signatureOf(fileName, content));
}

std::string TestUpdateService::signatureOf(const std::string& fileName, const std::string& content) const {
  const std::string message = fileName + "\n" + content;
  const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  EXPECT_EQ(1, EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, m_key.get()));
  std::string signature(64, '\0');
  std::size_t size = signature.size();
  EXPECT_EQ(1, EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(signature.data()), &size,
                              reinterpret_cast<const unsigned char*>(message.data()), message.size()));
  signature.resize(size);
  return signature;
}

std::vector<std::string> TestUpdateService::asked() const {
  std::vector<std::string> names;
  for (const TestHttpServer::Request& request : m_server.requests())
    names.push_back(request.target.substr(std::min(PATH.size(), request.target.size())));
  return names;
}

} // namespace Tallymoor
