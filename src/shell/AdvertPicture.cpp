#include "shell/AdvertPicture.h"
#include <algorithm>
#include <gif_lib.h>
#include <span>
#include <string_view>

namespace Tallymoor {

namespace {

constexpr int LARGEST_WIDTH = 2000;
constexpr int LARGEST_HEIGHT = 1000;
constexpr int LEAST_CODE_SIZE = 2;

/// Goes through a GIF block by block, without making its pictures.
class GifWalk {
public:
  explicit GifWalk(std::span<const std::uint8_t> bytes)
      : m_rest(bytes), m_file(DGifOpen(&m_rest, read, nullptr)) {}
  ~GifWalk() {
    if (m_file)
      DGifCloseFile(m_file, nullptr);
  }
  GifWalk(const GifWalk&) = delete;
  GifWalk& operator=(const GifWalk&) = delete;

  bool isSound() { return m_file && isSize(m_file->SWidth, m_file->SHeight) && walkBlocks(); }

private:
  static int read(GifFileType* file, GifByteType* bytes, int size) {
    auto& rest = *static_cast<std::span<const std::uint8_t>*>(file->UserData);
    const auto part = rest.first(std::min(rest.size(), static_cast<std::size_t>(size)));
    std::copy(part.begin(), part.end(), bytes);
    rest = rest.subspan(part.size());
    return static_cast<int>(part.size());
  }
  /// Within what an advert needs.
  static bool isSize(int width, int height) {
    return width > 0 && height > 0 && width <= LARGEST_WIDTH && height <= LARGEST_HEIGHT;
  }

  bool skipExtension() {
    int label = 0;
    GifByteType* data = nullptr;
    int read = DGifGetExtension(m_file, &label, &data);
    while (read == GIF_OK && data)
      read = DGifGetExtensionNext(m_file, &data);
    return read == GIF_OK;
  }
  bool skipPicture() {
    int codeSize = 0;
    GifByteType* data = nullptr;
    if (DGifGetImageDesc(m_file) != GIF_OK || !isSize(m_file->Image.Width, m_file->Image.Height) ||
        DGifGetCode(m_file, &codeSize, &data) != GIF_OK || codeSize < LEAST_CODE_SIZE)
      return false;
    int read = GIF_OK;
    while (read == GIF_OK && data)
      read = DGifGetCodeNext(m_file, &data);
    return read == GIF_OK;
  }
  bool walkBlocks() {
    bool hasPicture = false;
    GifRecordType kind = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(m_file, &kind) == GIF_OK && kind != TERMINATE_RECORD_TYPE) {
      if (!(kind == IMAGE_DESC_RECORD_TYPE ? skipPicture() : skipExtension()))
        return false;
      hasPicture = hasPicture || kind == IMAGE_DESC_RECORD_TYPE;
    }
    return hasPicture && kind == TERMINATE_RECORD_TYPE;
  }

  std::span<const std::uint8_t> m_rest;
  GifFileType* const m_file; ///< null if it does not begin as a GIF
};

} // namespace

bool isSoundGif(const std::vector<std::uint8_t>& bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return (text.starts_with("GIF87a") || text.starts_with("GIF89a")) && GifWalk(bytes).isSound();
}

} // namespace Tallymoor
