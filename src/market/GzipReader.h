#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>
#include <zlib.h>

namespace Tallymoor {

/// Decompresses an answer as it comes. The HTTP library's own decompression takes an answer that was cut for
/// a whole one, in which figures would be missing.
class GzipReader {
public:
  enum class Result { Taken, Broken, TooLarge };

  GzipReader();
  ~GzipReader();
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;

  /// Appends what comes out of these bytes, unless the output would become larger than the limit.
  Result take(const char* data, std::size_t length, std::vector<std::uint8_t>& output, std::size_t limit);
  /// True when the compressed bytes so far have come to their end.
  bool isWhole() const { return m_isWhole; }

private:
  z_stream m_stream{};
  bool m_isReady = false;
  bool m_isWhole = false;
};

} // namespace Tallymoor
