#include "market/ToldDividends.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "xml/DocumentFile.h"
#include "xml/ToldDividendsDocument.h"
#include <filesystem>
#include <utility>

namespace Tallymoor {

namespace {

const String TOLD = u"Told";
const String CODE = u"code";
const String DAY = u"day";
const String RATE = u"rate";
const String STATE = u"state";
const String WAITING = u"waiting";
const String SETTLED = u"settled";
const String DTD = u"ToldDividends.dtd";
constexpr int RATE_DECIMALS = 6;

} // namespace

ToldDividends::ToldDividends(const String& fileName) : m_fileName(fileName) {
  try {
    read();
  } catch (const Exception&) {
    m_told.clear();
    m_unreadable = true;
  }
}

void ToldDividends::add(const std::map<String, OfCode>& told) {
  bool isChanged = false;
  for (const auto& [code, dividends] : told)
    for (const auto& [day, rate] : dividends)
      isChanged |= m_told[code].try_emplace(day, Told{rate, true}).second;
  if (!isChanged)
    return;
  try {
    write();
  } catch (const Exception&) {
    // The next change is written with it.
  }
}

std::map<String, ToldDividends::OfCode> ToldDividends::waiting() const {
  std::map<String, OfCode> all;
  for (const auto& [code, dividends] : m_told)
    for (const auto& [day, told] : dividends)
      if (told.isWaiting)
        all[code].emplace(day, told.rate);
  return all;
}

void ToldDividends::settle(const String& code, const Date& day) {
  const auto dividends = m_told.find(code);
  if (dividends == m_told.end())
    return;
  const auto told = dividends->second.find(day);
  if (told == dividends->second.end() || !std::exchange(told->second.isWaiting, false))
    return;
  write();
}

void ToldDividends::read() {
  if (filePresence(m_fileName) == FilePresence::Missing)
    return;
  XMLToldDividends document;
  document.decode(m_fileName);
  for (std::size_t i = 0; i < document.numSubElements(TOLD); ++i) {
    const XMLElement& told = document.subElement(TOLD, i);
    m_told[told.attribute(CODE)].insert_or_assign(
        Date(told.attribute(DAY), DATE_DISPLAY_DMY),
        Told{told.attribute(RATE).toDouble(), told.attribute(STATE) == WAITING});
  }
}

void ToldDividends::write() {
  // Perhaps somebody can still read what stands there.
  if (std::exchange(m_unreadable, false)) {
    std::error_code failed;
    std::filesystem::rename(m_fileName.toUTF8(), (m_fileName + u".bak").toUTF8(), failed);
  }
  XMLToldDividends document;
  for (const auto& [code, dividends] : m_told)
    for (const auto& [day, told] : dividends) {
      XMLElement& element = document.addSubElement(new XMLToldDividend, TOLD);
      element.setAttribute(CODE, code);
      element.setAttribute(DAY, day.toString(DATE_DISPLAY_DMY));
      element.setAttribute(RATE, String::fromDouble(told.rate, RATE_DECIMALS));
      element.setAttribute(STATE, told.isWaiting ? WAITING : SETTLED);
    }
  saveDocument(m_fileName, document, DTD, newElement<XMLToldDividends>);
}

} // namespace Tallymoor
