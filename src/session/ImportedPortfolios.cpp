#include "session/ImportedPortfolios.h"
#include "foundation/FileReplacement.h"
#include "foundation/UserInteraction.h"
#include "session/ImportChecks.h"
#include "xml/CleanName.h"
#include "xml/DocumentLimits.h"
#include <algorithm>
#include <filesystem>
#include <sstream>

namespace Tallymoor {

namespace {

void cleanTexts(XMLElement& portfolio) {
  XMLElement& name = portfolio.subElement(u"Name");
  name.setValue(cleanName(name.value()));
  if (name.value().empty())
    throw Exception(u"A portfolio in the file has no usable name.");
  if (portfolio.numSubElements(u"ComparisonIndex") == 0)
    return;
  XMLElement& index = portfolio.subElement(u"ComparisonIndex");
  index.setValue(cleanName(index.value()));
}

void checkSize(const String& path) {
  std::error_code unknown; // a file that goes just now is not there to be read either
  const std::uintmax_t size = std::filesystem::file_size(path.toUTF8(), unknown);
  if (!unknown && size > ImportedPortfolios::LARGEST_FILE)
    throw Exception(u"The file is longer than " + inMegabytes(ImportedPortfolios::LARGEST_FILE) +
                    u", far more than any portfolios take.");
}

void checkCount(const XMLElement& records) {
  if (records.numSubElements(u"SharePortfolios") > ImportedPortfolios::MOST_PORTFOLIOS)
    throw Exception(u"The file holds more than " +
                    String::fromLong(static_cast<std::int64_t>(ImportedPortfolios::MOST_PORTFOLIOS)) +
                    u" portfolios.");
}

/// The file's records as the program writes them. What is missing shows only on writing, and must not be
/// found out by the next save of the records.
std::string readAndWritten(const String& path) {
  XMLPortfolios records;
  records.decode(path);
  checkCount(records);
  records.markContentUnsafe(); // names come as the file has them and are cleaned only afterwards
  std::ostringstream stream;
  records.encode(stream);
  return std::move(stream).str();
}

} // namespace

ImportedPortfolios::ImportedPortfolios(const String& path) {
  if (filePresence(path) != FilePresence::RegularFile)
    throw Exception(u"There is no such file: " + path);
  checkSize(path);
  m_records.decode(readAndWritten(path).c_str());
  for (std::size_t i = 0; i < m_records.numSubElements(u"SharePortfolios"); ++i) {
    XMLElement& portfolio = m_records.subElement(u"SharePortfolios", i);
    checkImportedDates(portfolio);
    checkImportedAmounts(portfolio);
    cleanTexts(portfolio);
    m_kept.push_back(&portfolio);
  }
}

void ImportedPortfolios::askForReplacements(const std::set<String>& existing, UserInteraction& user) {
  std::set<String> taken = existing;
  std::erase_if(m_kept, [&](const XMLElement* portfolio) {
    const String& name = textValue(*portfolio, u"Name");
    if (taken.contains(name) &&
        !user.question(u"You already have a portfolio called \"" + name +
                       u"\"\nin your Total Capital. Do you want to replace it with\n" +
                       u"an imported portfolio?"))
      return true;
    taken.insert(name);
    return false;
  });
}

std::vector<String> ImportedPortfolios::names() const {
  std::vector<String> names;
  for (const XMLElement* portfolio : m_kept)
    names.push_back(textValue(*portfolio, u"Name"));
  return names;
}

std::vector<std::unique_ptr<XMLElement>> ImportedPortfolios::take() const {
  std::vector<std::unique_ptr<XMLElement>> portfolios;
  for (const XMLElement* portfolio : m_kept)
    portfolios.emplace_back(portfolio->clone([]() -> XMLElement* { return new XMLSharePortfolio; }));
  return portfolios;
}

String importSummary(const std::vector<String>& names) {
  constexpr std::size_t MOST_NAMES = 50;
  String text = u"The following share portfolios were imported:\n";
  for (std::size_t i = 0; i < std::min(names.size(), MOST_NAMES); ++i)
    text += (i == 0 ? String() : String(u", ")) + names[i];
  if (names.size() > MOST_NAMES)
    text += u" and " + String::fromLong(static_cast<std::int64_t>(names.size() - MOST_NAMES)) + u" more";
  return text;
}

} // namespace Tallymoor
