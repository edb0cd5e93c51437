#include "market/GzipReader.h"
#include <array>

namespace Tallymoor {

namespace {

constexpr int GZIP_ALONE = 15 + 16; ///< the largest window, and no other format
constexpr std::size_t PIECE = 16384;

} // namespace

GzipReader::GzipReader() : m_isReady(inflateInit2(&m_stream, GZIP_ALONE) == Z_OK) {}

GzipReader::~GzipReader() {
  if (m_isReady)
    inflateEnd(&m_stream);
}

GzipReader::Result GzipReader::take(const char* data, std::size_t length, std::vector<std::uint8_t>& output,
                                    std::size_t limit) {
  if (!m_isReady || (m_isWhole && length != 0))
    return Result::Broken;
  std::array<std::uint8_t, PIECE> piece{};
  m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
  m_stream.avail_in = static_cast<uInt>(length);
  do {
    m_stream.next_out = piece.data();
    m_stream.avail_out = PIECE;
    const int result = inflate(&m_stream, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
      return Result::Broken;
    m_isWhole = result == Z_STREAM_END;
    const std::size_t got = PIECE - m_stream.avail_out;
    if (got > limit - output.size())
      return Result::TooLarge;
    output.insert(output.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
  } while (!m_isWhole && m_stream.avail_out == 0);
  return m_stream.avail_in == 0 ? Result::Taken : Result::Broken;
}

} // namespace Tallymoor
