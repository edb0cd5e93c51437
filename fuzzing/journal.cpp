// The journal. The first byte selects how the rest is read: as a journal's file, as a packed change, or as
// the content of one, which is compressed first.
#include "session/Journal.h"
#include "foundation/Exception.h"
#include "support/Input.h"
#include "support/Require.h"
#include "support/ScratchFolder.h"
#include <zstd.h>

namespace Tallymoor::Fuzz {
namespace {

/// Whatever stands in the file, what is appended is read again behind it.
void readFile(std::string_view bytes) {
  static const ScratchFolder folder;
  const String path(folder.write("Journal", bytes).c_str());
  Change added;
  added.sentence = u"added";
  std::size_t count = 0;
  try {
    Journal journal(path);
    for (const Journal::Entry& entry : journal.entries())
      require(journal.read(entry).sentence == entry.sentence, "an entry is read as it was found");
    journal.append(added);
    count = journal.entries().size();
  } catch (const Exception&) {
    return; // no journal
  }
  Journal journal(path);
  require(journal.entries().size() == count, "all entries are found again");
  require(journal.read(journal.entries().back()) == added, "what was appended is read again");
}

void readChange(std::string_view bytes) {
  const std::optional<Change> change = unpacked(bytes);
  if (!change)
    return;
  require(unpacked(packed(*change)) == change, "a change that was read is written the same");
  for (const ChangedPortfolio& portfolio : change->portfolios)
    (void)portfolio.appliedTo("<SharePortfolio><String>Trading</String></SharePortfolio>");
}

std::string compressed(std::string_view bytes) {
  std::string result(ZSTD_compressBound(bytes.size()), '\0');
  result.resize(ZSTD_compress(result.data(), result.size(), bytes.data(), bytes.size(), 1));
  return result;
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  const std::size_t way = input.choice(3);
  if (way == 0)
    readFile(input.rest());
  else
    readChange(way == 1 ? std::string(input.rest()) : compressed(input.rest()));
  return 0;
}
