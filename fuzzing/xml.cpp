// Documents of every kind. The first byte selects the kind and whether the document is read as text or as a
// file. The rest is the document. A document that was read must be the same after it was written and read
// again.
#include "foundation/Exception.h"
#include "support/Input.h"
#include "support/Require.h"
#include "support/ScratchFolder.h"
#include "xml/CapitalRecord.h"
#include "xml/LocatorDocuments.h"
#include "xml/PortfolioRecords.h"
#include "xml/PriceCache.h"
#include "xml/ReportDocument.h"
#include "xml/SmallDocuments.h"
#include <array>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

namespace Tallymoor::Fuzz {
namespace {

constexpr std::array<XMLElement::Factory, 11> KINDS{newElement<XMLPortfolios>,
                                                    newElement<XMLSharePortfolioCapitalRecord>,
                                                    newElement<XMLShareValues>,
                                                    newElement<XMLCountryOptions>,
                                                    newElement<XMLVersionsAvailable>,
                                                    newElement<XMLAdvertisement>,
                                                    newElement<XMLXslStylesheet>,
                                                    newElement<XMLCurrentPriceLocators>,
                                                    newElement<XMLCodeSearchLocators>,
                                                    newElement<XMLHistoricalPricesLocators>,
                                                    newElement<XMLReport>};
constexpr std::uint8_t AS_FILE = 0x80;

struct Destroy {
  void operator()(XMLElement* element) const { element->destroy(); }
};
using Document = std::unique_ptr<XMLElement, Destroy>;

/// The written document. Empty if it is incomplete.
std::optional<std::string> written(XMLElement& document) {
  std::ostringstream stream;
  try {
    document.encodeWithDoctype(stream, u"Tallymoor.dtd");
  } catch (const XMLException&) {
    return std::nullopt;
  }
  return stream.str();
}

bool readText(XMLElement& document, const std::string& text) {
  try {
    document.decode(text.c_str());
  } catch (const XMLException&) {
    return false;
  }
  return true;
}

bool readFile(XMLElement& document, std::string_view bytes) {
  static const ScratchFolder folder;
  const std::string path = folder.write("document.xml", bytes);
  try {
    document.decode(String(path.c_str()));
  } catch (const XMLException&) {
    return false;
  }
  return true;
}

bool read(XMLElement& document, std::string_view bytes, bool asFile) {
  return asFile ? readFile(document, bytes) : readText(document, std::string(bytes));
}

/// Values are written unescaped unless their class declares free text. A document can contain values (as
/// references, in CDATA sections or between apostrophes) that can't be written back. Saving then fails and
/// leaves the old file unchanged.
bool mayHoldMarkup(std::string_view bytes) {
  return bytes.find_first_of("&['") != std::string_view::npos;
}

void checkWritten(XMLElement::Factory kind, const std::string& text, bool mayFail) {
  const Document again(kind());
  if (!readText(*again, text))
    return require(mayFail, "what was written can be read");
  const std::optional<std::string> second = written(*again);
  require(second.has_value(), "what was read from our own text can be written");
  require(mayFail || *second == text, "what was written, read and written again is the same");
}

void checkClone(XMLElement::Factory kind, const XMLElement& document, const std::string& text) {
  const Document copy(document.clone(kind));
  require(written(*copy) == text, "a copy is written as its original");
}

void check(XMLElement::Factory kind, std::string_view bytes, bool asFile) {
  const Document document(kind());
  const bool isRead = read(*document, bytes, asFile);
  const std::optional<std::string> text = written(*document);
  if (text)
    checkClone(kind, *document, *text);
  if (text && isRead)
    checkWritten(kind, *text, mayHoldMarkup(bytes));
  document->reset();
  require(read(*document, bytes, asFile) == isRead,
          "a document is taken or refused the second time as the first");
  // The constructor of a report sets values that a reset removes. No report is read twice.
  if (isRead && kind != newElement<XMLReport>)
    require(written(*document) == text, "a document read a second time is the same");
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  const std::uint8_t first = input.byte();
  check(KINDS[(first & 0x0F) % KINDS.size()], input.rest(), (first & AS_FILE) != 0);
  return 0;
}
