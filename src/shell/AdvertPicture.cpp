#include "shell/AdvertPicture.h"
#include <cstddef>
#include <cstring>
#include <optional>

namespace Tallymoor {

namespace {

constexpr unsigned LARGEST_WIDTH = 2000;
constexpr unsigned LARGEST_HEIGHT = 1000;
constexpr unsigned COLOUR_TABLE = 0x80;      ///< flag: a table of colours follows
constexpr unsigned COLOUR_TABLE_SIZE = 0x07; ///< its size as a power of two, less one
constexpr unsigned LEAST_CODE_SIZE = 2, LARGEST_CODE_SIZE = 8;

/// Goes through a GIF block by block (their layout is that of GIF89a, CompuServe 1990).
class GifWalk {
public:
  explicit GifWalk(const std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {}

  bool isSound() { return hasHeader() && skipScreen() && walkBlocks(); }

private:
  /// Nothing at the end of the file.
  std::optional<unsigned> next() {
    return m_at < m_bytes.size() ? std::optional<unsigned>(m_bytes[m_at++]) : std::nullopt;
  }
  bool skip(std::size_t count) {
    if (m_bytes.size() - m_at < count)
      return false;
    m_at += count;
    return true;
  }
  bool hasHeader() {
    const auto starts = [this](const char* with) { return std::memcmp(m_bytes.data(), with, 6) == 0; };
    return m_bytes.size() >= 6 && (starts("GIF87a") || starts("GIF89a")) && skip(6);
  }
  /// Two sizes of two bytes each, within what an advert needs.
  bool takeSize() {
    if (m_bytes.size() - m_at < 4)
      return false;
    const unsigned width = m_bytes[m_at] | m_bytes[m_at + 1] << 8;
    const unsigned height = m_bytes[m_at + 2] | m_bytes[m_at + 3] << 8;
    m_at += 4;
    return width > 0 && height > 0 && width <= LARGEST_WIDTH && height <= LARGEST_HEIGHT;
  }
  bool skipColours(unsigned flags) {
    return !(flags & COLOUR_TABLE) || skip(3u << ((flags & COLOUR_TABLE_SIZE) + 1));
  }
  bool skipScreen() {
    if (!takeSize())
      return false;
    const auto flags = next();
    return flags && skip(2) && skipColours(*flags);
  }
  /// Blocks of data, each behind its length, up to one of length 0.
  bool skipData() {
    while (const auto length = next()) {
      if (*length == 0)
        return true;
      if (!skip(*length))
        return false;
    }
    return false;
  }
  bool skipPicture() {
    if (!skip(4) || !takeSize()) // its place, then its size
      return false;
    const auto flags = next();
    if (!flags || !skipColours(*flags))
      return false;
    const auto codeSize = next();
    return codeSize && *codeSize >= LEAST_CODE_SIZE && *codeSize <= LARGEST_CODE_SIZE && skipData();
  }
  bool walkBlocks() {
    bool hasPicture = false;
    while (const auto kind = next()) {
      switch (*kind) {
      case 0x21: // extension: a label, then data
        if (!next() || !skipData())
          return false;
        break;
      case 0x2C:
        if (!skipPicture())
          return false;
        hasPicture = true;
        break;
      case 0x3B: // the end mark
        return hasPicture;
      default:
        return false;
      }
    }
    return false;
  }

  const std::vector<std::uint8_t>& m_bytes;
  std::size_t m_at = 0;
};

} // namespace

bool isSoundGif(const std::vector<std::uint8_t>& bytes) {
  return GifWalk(bytes).isSound();
}

} // namespace Tallymoor
