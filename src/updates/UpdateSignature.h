#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace Tallymoor {

/// Signatures of documents and program files, by Ed25519. What is signed is the file's name, a line feed and
/// the file's bytes: with the name in it, a file that was signed once can't be served as another.
class UpdateSignature {
public:
  static constexpr std::size_t SIZE = 64; ///< bytes of a signature

  /// True for 64 hexadecimal digits.
  static bool isPublicKey(const std::string& hexKey);
  /// True when the signature is that of the file by the holder of the key. False for anything else, an
  /// unreadable key included; never throws for what is in the arguments.
  static bool verifies(const std::string& hexKey, const std::string& fileName,
                       const std::vector<std::uint8_t>& content, const std::vector<std::uint8_t>& signature);
};

} // namespace Tallymoor
