#include "session/RecordsReading.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "xml/CleanName.h"
#include "xml/Leaves.h"
#include "xml/PortfolioRecords.h"
#include <set>

namespace Tallymoor {

namespace {

bool isCleanName(const String& name) {
  return !name.empty() && cleanName(name) == name;
}

/// Those that stay as they are.
std::set<String> cleanNamesOf(const XMLElement& records) {
  std::set<String> names;
  for (std::size_t i = 0; i < records.numSubElements(u"SharePortfolios"); ++i)
    if (const String name = textValue(records.subElement(u"SharePortfolios", i), u"Name"); isCleanName(name))
      names.insert(name);
  return names;
}

/// What is left of the name of a portfolio, with a number behind it where another one has that name.
String unusedName(const String& name, std::size_t index, const std::set<String>& taken) {
  const String cleaned = cleanName(name);
  const String wanted =
      cleaned.empty() ? u"Portfolio " + String::fromLong(static_cast<std::int64_t>(index) + 1) : cleaned;
  String unused = wanted;
  for (int number = 2; taken.contains(unused); ++number)
    unused = wanted + u" " + String::fromLong(number);
  return unused;
}

} // namespace

void readRecordsDocument(XMLPortfolios& records, const String& path) {
  if (filePresence(path) != FilePresence::RegularFile)
    throw Exception(u"TallymoorWindow::loadPortfolios - can't read " + path);
  records.decode(path);
}

void cleanRecordNames(XMLPortfolios& records) {
  std::set<String> taken = cleanNamesOf(records);
  for (std::size_t i = 0; i < records.numSubElements(u"SharePortfolios"); ++i) {
    XMLElement& portfolio = records.subElement(u"SharePortfolios", i);
    XMLElement& name = portfolio.subElement(u"Name");
    if (!isCleanName(name.value())) {
      name.setValue(unusedName(name.value(), i, taken));
      taken.insert(name.value());
    }
    if (portfolio.numSubElements(u"ComparisonIndex") == 0)
      continue;
    XMLElement& index = portfolio.subElement(u"ComparisonIndex");
    if (const String clean = cleanName(index.value()); !(clean == index.value()))
      index.setValue(clean);
  }
}

} // namespace Tallymoor
