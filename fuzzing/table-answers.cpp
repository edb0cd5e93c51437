// Web pages with a table that is found by its headings. The first byte selects the headings and the way of
// writing days and numbers; the rest is the page.
#include "answers/AnswerChecks.h"
#include "pages/PageTables.h"
#include "support/Require.h"
#include <vector>

namespace Tallymoor::Fuzz {
namespace {

AnswerFormat formatOf(std::uint8_t choice) {
  using Column = AnswerColumn;
  static const std::vector<std::vector<ColumnPlace>> columns{
      {{Column::Date, u"Date"}, {Column::Close, u"Close*"}},
      {{Column::Date, u"Dat*m"}, {Column::Close, u"Schluss"}, {Column::Volume, u"*ol*"}},
      {{Column::Code, u"Code"}, {Column::Name, u"*"}},
      {{Column::Close, u"Last"}, {Column::Currency, u"*urrency"}}};
  const std::vector<AnswerFormat> formats =
      formatsOf(AnswerReader::Headings, columns[choice % columns.size()]);
  return formats[choice / columns.size() % formats.size()];
}

void checkTables(std::string_view bytes) {
  for (const PageTable& table : readPageTables(String::fromUTF8(bytes)))
    for (const PageTableRow& row : table) {
      require(row.cells.size() == row.spans.size(), "each cell has its span");
      for (const unsigned span : row.spans)
        require(span >= 1 && span <= 1000, "a cell goes over some columns");
    }
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  const auto [choice, bytes] = AnswerInput(data, size);
  checkTables(bytes);
  // A comment inside a text joins what stands around it.
  const bool hasComments = bytes.find("<!--") != std::string_view::npos;
  checkAnswer(bytes, formatOf(choice), hasComments ? "<" : "&");
  checkProposal(bytes);
  return 0;
}
