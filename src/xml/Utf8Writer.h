#pragma once
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string_view>

namespace Tallymoor {

/// Writes text as UTF-8 to a stream through a buffer of its own, since documents are millions of short
/// pieces. Characters that XML 1.0 can't hold are dropped.
class Utf8Writer {
public:
  explicit Utf8Writer(std::ostream& stream);
  Utf8Writer(const Utf8Writer&) = delete;
  Utf8Writer& operator=(const Utf8Writer&) = delete;

  /// Bytes as they are.
  void raw(std::string_view bytes);
  void raw(char byte) {
    if (m_next == m_end)
      flush();
    *m_next++ = byte;
  }
  /// With markup as it stands.
  void text(std::u16string_view units);
  /// With the five characters of markup as entities.
  void escaped(std::u16string_view units);
  /// For the value of an attribute, where a reader takes line ends and tabs for blanks: as entities, too.
  void attribute(std::u16string_view units);
  /// Hands the buffer to the stream. Needed at the end; nothing does it by itself.
  void flush();
  /// Bytes since the beginning.
  std::size_t written() const { return m_flushed + static_cast<std::size_t>(m_next - m_buffer.get()); }

private:
  template <bool Escape>
  void write(std::u16string_view units);
  char* writeNonAscii(std::u16string_view units, std::size_t& index, char* out);

  std::ostream& m_stream;
  std::unique_ptr<char[]> m_buffer;
  char* m_next;
  char* m_end;
  std::size_t m_flushed = 0;
};

} // namespace Tallymoor
