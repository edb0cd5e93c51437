#include "session/Change.h"
#include "foundation/Exception.h"
#include <algorithm>
#include <memory>
#include <openssl/evp.h>
#include <utility>
#include <zstd.h>

namespace Tallymoor {

namespace {

constexpr int COMPRESSION = 3;
/// An import may replace portfolios of 64 MB, and a change holds both versions.
constexpr std::size_t LARGEST = std::size_t{512} * 1024 * 1024;

/// The first bytes of a state, by which those of the first versions are told apart: SHA-256 of the text.
constexpr std::array<unsigned char, 8> STATE_MARK{0x89, 'T', 'M', 's', 't', 'a', 't', '2'};

class Packer {
public:
  template <class Number>
  void number(Number value) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
      m_bytes.push_back(static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i)));
  }
  void text(std::string_view text) {
    number<std::uint64_t>(text.size());
    m_bytes.append(text);
  }
  void state(const RecordsState& state) {
    m_bytes.append(reinterpret_cast<const char*>(state.data()), state.size());
  }
  const std::string& bytes() const { return m_bytes; }

private:
  std::string m_bytes;
};

/// Reads what a Packer wrote. What is missing reads as 0 or empty, and `isWhole` is false from then on.
class Unpacker {
public:
  explicit Unpacker(std::string_view bytes) : m_rest(bytes) {}

  template <class Number>
  Number number() {
    std::uint64_t value = 0;
    const std::string_view bytes = take(sizeof(Number));
    for (std::size_t i = bytes.size(); i > 0; --i)
      value = value << 8 | static_cast<unsigned char>(bytes[i - 1]);
    return static_cast<Number>(value);
  }
  std::string_view text() { return take(number<std::uint64_t>()); }
  RecordsState state() {
    RecordsState state{};
    const std::string_view bytes = take(state.size());
    std::copy(bytes.begin(), bytes.end(), state.begin());
    return state;
  }
  bool isWhole() const { return m_isWhole; }
  bool isAtEnd() const { return m_rest.empty(); }

private:
  std::string_view take(std::uint64_t count) {
    if (count > m_rest.size()) {
      m_isWhole = false;
      m_rest = {};
    }
    const std::string_view taken = m_rest.substr(0, m_isWhole ? count : 0);
    m_rest.remove_prefix(taken.size());
    return taken;
  }

  std::string_view m_rest;
  bool m_isWhole = true;
};

void packPortfolio(Packer& packer, const ChangedPortfolio& portfolio) {
  packer.text(portfolio.nameBefore.toUTF8());
  packer.text(portfolio.nameAfter.toUTF8());
  packer.number(portfolio.placeBefore);
  packer.number(portfolio.placeAfter);
  packer.state(portfolio.before);
  packer.state(portfolio.after);
  packer.number<std::uint64_t>(portfolio.edits.size());
  for (const TextEdit& edit : portfolio.edits) {
    packer.number<std::uint64_t>(edit.place);
    packer.text(edit.removed);
    packer.text(edit.inserted);
  }
}

// The loops end with the bytes, so a false count costs nothing.

ChangedPortfolio unpackPortfolio(Unpacker& from) {
  ChangedPortfolio portfolio;
  portfolio.nameBefore = String::fromUTF8(from.text());
  portfolio.nameAfter = String::fromUTF8(from.text());
  portfolio.placeBefore = from.number<std::uint32_t>();
  portfolio.placeAfter = from.number<std::uint32_t>();
  portfolio.before = from.state();
  portfolio.after = from.state();
  for (auto count = from.number<std::uint64_t>(); count > 0 && from.isWhole(); --count) {
    TextEdit& edit = portfolio.edits.emplace_back();
    edit.place = from.number<std::uint64_t>();
    edit.removed = from.text();
    edit.inserted = from.text();
  }
  return portfolio;
}

std::optional<Change> unpackChange(std::string_view bytes) {
  Unpacker from(bytes);
  Change change;
  const auto kind = from.number<std::uint8_t>();
  if (kind < static_cast<std::uint8_t>(Change::Kind::Made) ||
      kind > static_cast<std::uint8_t>(Change::Kind::Dropped))
    return std::nullopt;
  change.kind = static_cast<Change::Kind>(kind);
  change.other = from.number<std::uint64_t>();
  change.moment = from.number<std::int64_t>();
  change.sentence = String::fromUTF8(from.text());
  for (auto count = from.number<std::uint64_t>(); count > 0 && from.isWhole(); --count)
    change.portfolios.push_back(unpackPortfolio(from));
  return from.isWhole() && from.isAtEnd() ? std::optional(std::move(change)) : std::nullopt;
}

RecordsState earlierStateOf(std::string_view records) {
  RecordsState state{};
  unsigned length = 0;
  if (EVP_Digest(records.data(), records.size(), state.data(), &length, EVP_sha256(), nullptr) != 1)
    throw Exception(u"A checksum can't be made of the records.");
  return state;
}

} // namespace

RecordsState stateOf(const TextFingerprint& records) {
  RecordsState state{};
  auto out = std::copy(STATE_MARK.begin(), STATE_MARK.end(), state.begin());
  for (const std::uint64_t number : {records.values()[0], records.values()[1], records.length()})
    for (int shift = 0; shift < 64; shift += 8)
      *out++ = static_cast<unsigned char>(number >> shift);
  return state;
}

bool StatesOf::contain(const RecordsState& state) const {
  if (std::equal(STATE_MARK.begin(), STATE_MARK.end(), state.begin()))
    return state == m_state;
  if (!m_earlier)
    m_earlier = earlierStateOf(m_records);
  return state == *m_earlier;
}

ChangedPortfolio ChangedPortfolio::between(const PortfolioText& before, const PortfolioText& after) {
  return {before.name,
          after.name,
          before.place,
          after.place,
          before.state,
          after.state,
          editsBetween(before.text, after.text)};
}

ChangedPortfolio ChangedPortfolio::reversed() const {
  ChangedPortfolio back;
  back.nameBefore = nameAfter;
  back.nameAfter = nameBefore;
  back.placeBefore = placeAfter;
  back.placeAfter = placeBefore;
  back.before = after;
  back.after = before;
  back.edits = Tallymoor::reversed(edits);
  return back;
}

std::optional<std::string> ChangedPortfolio::appliedTo(std::string_view records) const {
  if (!StatesOf(records).contain(before))
    return std::nullopt;
  std::optional<std::string> result = edited(records, edits);
  return result && StatesOf(*result).contain(after) ? result : std::nullopt;
}

std::string packed(const Change& change) {
  Packer packer;
  packer.number(static_cast<std::uint8_t>(change.kind));
  packer.number(change.other);
  packer.number(change.moment);
  packer.text(change.sentence.toUTF8());
  packer.number<std::uint64_t>(change.portfolios.size());
  for (const ChangedPortfolio& portfolio : change.portfolios)
    packPortfolio(packer, portfolio);
  if (packer.bytes().size() > LARGEST)
    throw Exception(u"The change is too large to be kept in the journal.");
  // Made once, as making it takes longer than compressing a usual change.
  static thread_local const std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> context(ZSTD_createCCtx(),
                                                                                         ZSTD_freeCCtx);
  if (!context)
    throw Exception(u"There is no memory to compress the change for the journal.");
  std::string bytes(ZSTD_compressBound(packer.bytes().size()), '\0');
  const std::size_t length = ZSTD_compressCCtx(context.get(), bytes.data(), bytes.size(),
                                               packer.bytes().data(), packer.bytes().size(), COMPRESSION);
  if (ZSTD_isError(length))
    throw Exception(u"The change can't be compressed for the journal: " + String(ZSTD_getErrorName(length)));
  bytes.resize(length);
  return bytes;
}

std::optional<Change> unpacked(std::string_view bytes) {
  const unsigned long long length = ZSTD_getFrameContentSize(bytes.data(), bytes.size());
  if (length == ZSTD_CONTENTSIZE_ERROR || length == ZSTD_CONTENTSIZE_UNKNOWN || length > LARGEST)
    return std::nullopt;
  std::string content(length, '\0');
  if (ZSTD_decompress(content.data(), content.size(), bytes.data(), bytes.size()) != length)
    return std::nullopt;
  return unpackChange(content);
}

} // namespace Tallymoor
