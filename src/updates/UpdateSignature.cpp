#include "updates/UpdateSignature.h"
#include <array>
#include <charconv>
#include <memory>
#include <openssl/evp.h>
#include <optional>

namespace Tallymoor {

namespace {

constexpr std::size_t KEY_SIZE = 32;
using Key = std::array<unsigned char, KEY_SIZE>;

std::optional<Key> readKey(const std::string& hexKey) {
  if (hexKey.size() != 2 * KEY_SIZE)
    return std::nullopt;
  Key key{};
  for (std::size_t i = 0; i < KEY_SIZE; ++i) {
    const char* const digits = hexKey.data() + 2 * i;
    const auto [end, error] = std::from_chars(digits, digits + 2, key[i], 16);
    if (error != std::errc() || end != digits + 2)
      return std::nullopt;
  }
  return key;
}

std::vector<std::uint8_t> signedMessage(const std::string& fileName,
                                        const std::vector<std::uint8_t>& content) {
  std::vector<std::uint8_t> message;
  message.reserve(fileName.size() + 1 + content.size());
  message.insert(message.end(), fileName.begin(), fileName.end());
  message.push_back('\n');
  message.insert(message.end(), content.begin(), content.end());
  return message;
}

} // namespace

bool UpdateSignature::isPublicKey(const std::string& hexKey) {
  return readKey(hexKey).has_value();
}

bool UpdateSignature::verifies(const std::string& hexKey, const std::string& fileName,
                               const std::vector<std::uint8_t>& content,
                               const std::vector<std::uint8_t>& signature) {
  const std::optional<Key> bytes = readKey(hexKey);
  if (!bytes || signature.size() != SIZE)
    return false;
  const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(
      EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytes->data(), bytes->size()), EVP_PKEY_free);
  const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  if (!key || !context || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
    return false;
  const std::vector<std::uint8_t> message = signedMessage(fileName, content);
  return EVP_DigestVerify(context.get(), signature.data(), signature.size(), message.data(),
                          message.size()) == 1;
}

} // namespace Tallymoor
