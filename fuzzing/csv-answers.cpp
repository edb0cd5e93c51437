// Answers in CSV. The first byte selects columns by heading or by number and the way of writing days and
// numbers; the rest is the answer.
#include "answers/AnswerChecks.h"
#include "pages/CsvTable.h"
#include "support/Require.h"
#include <vector>

namespace Tallymoor::Fuzz {
namespace {

constexpr std::uint8_t BY_NUMBER = 0x80;
constexpr std::uint8_t SKIPS_A_LINE = 0x40;

AnswerFormat formatOf(std::uint8_t choice) {
  using Column = AnswerColumn;
  static const std::vector<AnswerFormat> byHeading =
      formatsOf(AnswerReader::Csv, {{Column::Date, u"Date"},
                                    {Column::Close, u"Close"},
                                    {Column::High, u"High"},
                                    {Column::Volume, u"Volume"}});
  static const std::vector<AnswerFormat> byNumber =
      formatsOf(AnswerReader::Csv,
                {{Column::Date, u"1"}, {Column::Close, u"3"}, {Column::Code, u"2"}, {Column::Split, u"4"}});
  const std::vector<AnswerFormat>& formats = (choice & BY_NUMBER) != 0 ? byNumber : byHeading;
  AnswerFormat format = formats[choice % formats.size()];
  format.hasHeading = (choice & BY_NUMBER) == 0;
  format.skipLines = (choice & SKIPS_A_LINE) != 0 ? 1 : 0;
  return format;
}

/// Without quotes a row is a line and its fields are what stands between the separators.
void compareWithPlainSplit(std::string_view bytes, char separator) {
  if (bytes.find_first_of("\"\0", 0, 2) != std::string_view::npos)
    return;
  std::vector<std::vector<String>> rows;
  try {
    rows = readCsvRows(bytes, separator);
  } catch (const AnswerException&) {
    return;
  }
  std::size_t row = 0;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    if (line.find_first_not_of(" \t") == std::string_view::npos)
      continue;
    require(row < rows.size(), "each line is a row");
    for (const String& field : rows[row++]) {
      const std::size_t stop = std::min(line.find(separator), line.size());
      require(field == String::fromUTF8(line.substr(0, stop)).trimmed(),
              "a field stands between two separators");
      line.remove_prefix(std::min(stop + 1, line.size()));
    }
    require(line.empty(), "no field is left");
  }
  require(row == rows.size(), "each row is a line");
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  const auto [choice, bytes] = AnswerInput(data, size);
  checkAnswer(bytes, formatOf(choice), "\"");
  compareWithPlainSplit(bytes, (choice & 1) != 0 ? ';' : ',');
  checkProposal(bytes);
  return 0;
}
