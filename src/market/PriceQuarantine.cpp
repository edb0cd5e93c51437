#include "market/PriceQuarantine.h"
#include "foundation/FileReplacement.h"
#include "market/PriceCacheFile.h"
#include "xml/DocumentFile.h"
#include "xml/PriceDecisionsDocument.h"
#include <algorithm>
#include <filesystem>

namespace Tallymoor {

namespace {

const String REFUSED = u"Refused";
const String TRUSTED = u"Trusted";
const String CODE = u"code";
const String DAY = u"day";
const String CLOSE = u"close";
const String REASON = u"reason";
const String DTD = u"PriceDecisions.dtd";

struct NamedReason {
  DoubtReason reason;
  std::u16string_view name;
};
constexpr NamedReason NAMED_REASONS[] = {{DoubtReason::Jump, u"jump"},
                                         {DoubtReason::Unit, u"unit"},
                                         {DoubtReason::Range, u"range"},
                                         {DoubtReason::Contradiction, u"contradiction"}};

String nameOf(DoubtReason reason) {
  return String(std::ranges::find(NAMED_REASONS, reason, &NamedReason::reason)->name);
}

/// Nothing for the reason of a later version.
std::optional<DoubtReason> reasonNamed(const String& name) {
  for (const NamedReason& named : NAMED_REASONS)
    if (name == String(named.name))
      return named.reason;
  return std::nullopt;
}

String closeText(double close) {
  return String::fromDouble(close, PRICE_CACHE_DECIMALS);
}

} // namespace

PriceQuarantine::PriceQuarantine(const String& fileName) : m_fileName(fileName) {
  try {
    read();
  } catch (const Exception&) {
    m_decisions.clear();
    m_unreadable = true;
  }
}

// --- Prices that come

SharePriceCache::Rows PriceQuarantine::admit(const String& code, const CachedShare& known,
                                             const SharePriceCache::Rows& fetched) {
  CheckedPrices checked = checkPrices(known, fetched, !hasOpenLevel(code));
  for (const DoubtfulPrice& price : checked.doubtful)
    if (isTrusted(code, price.reason))
      checked.good.emplace(price.day, price.value);
    else
      keepAside(code, price);
  removeSettled(code, checked.good);
  return std::move(checked.good);
}

bool PriceQuarantine::admitCurrent(const String& code, const CachedShare& known, const Date& day,
                                   double price) {
  const auto doubtful = checkCurrentPrice(known, day, price);
  if (!doubtful || isTrusted(code, doubtful->reason)) {
    removeSettled(code, {{day, {.close = price}}});
    return true;
  }
  keepAside(code, *doubtful);
  return false;
}

/// While a level is refused or waits for a decision, rows that keep it don't confirm it.
bool PriceQuarantine::hasOpenLevel(const String& code) const {
  const auto decisions = m_decisions.find(code);
  return m_waiting.contains(code) || (decisions != m_decisions.end() && !decisions->second.refused.empty());
}

void PriceQuarantine::keepAside(const String& code, const DoubtfulPrice& price) {
  if (isRefused(code, price))
    return;
  const bool isNew = m_waiting[code].insert_or_assign(price.day, price).second;
  if (isNew)
    tellChanged();
}

/// The source has corrected the prices of these days itself.
void PriceQuarantine::removeSettled(const String& code, const SharePriceCache::Rows& good) {
  const auto waiting = m_waiting.find(code);
  if (waiting == m_waiting.end())
    return;
  std::erase_if(waiting->second, [&good](const auto& price) { return good.contains(price.first); });
  if (waiting->second.empty()) {
    m_waiting.erase(waiting);
    tellChanged();
  }
}

bool PriceQuarantine::isTrusted(const String& code, DoubtReason reason) const {
  const auto decisions = m_decisions.find(code);
  return decisions != m_decisions.end() && decisions->second.trusted.contains(reason);
}

bool PriceQuarantine::isRefused(const String& code, const DoubtfulPrice& price) const {
  const auto decisions = m_decisions.find(code);
  return decisions != m_decisions.end() &&
         decisions->second.refused.contains({price.day, closeText(price.value.close)});
}

void PriceQuarantine::tellChanged() const {
  if (changed)
    changed();
}

// --- Decisions

PriceQuarantine::Prices PriceQuarantine::takeOut(const String& code) {
  auto waiting = m_waiting.extract(code);
  return waiting.empty() ? Prices() : std::move(waiting.mapped());
}

PriceQuarantine::Prices PriceQuarantine::accept(const String& code) {
  Prices prices = takeOut(code);
  tellChanged();
  return prices;
}

PriceQuarantine::Prices PriceQuarantine::acceptFromNowOn(const String& code) {
  Prices prices = takeOut(code);
  for (const auto& [day, price] : prices)
    m_decisions[code].trusted.insert(price.reason);
  tellChanged();
  write();
  return prices;
}

void PriceQuarantine::refuse(const String& code) {
  for (const auto& [day, price] : takeOut(code))
    m_decisions[code].refused.insert({day, closeText(price.value.close)});
  tellChanged();
  write();
}

// --- The document

void PriceQuarantine::read() {
  if (filePresence(m_fileName) == FilePresence::Missing)
    return;
  XMLPriceDecisions document;
  document.decode(m_fileName);
  for (std::size_t i = 0; i < document.numSubElements(REFUSED); ++i) {
    const XMLElement& refused = document.subElement(REFUSED, i);
    m_decisions[refused.attribute(CODE)].refused.insert(
        {Date(refused.attribute(DAY), DATE_DISPLAY_DMY), refused.attribute(CLOSE)});
  }
  for (std::size_t i = 0; i < document.numSubElements(TRUSTED); ++i) {
    const XMLElement& trusted = document.subElement(TRUSTED, i);
    if (const auto reason = reasonNamed(trusted.attribute(REASON)))
      m_decisions[trusted.attribute(CODE)].trusted.insert(*reason);
  }
}

void PriceQuarantine::write() {
  // Perhaps somebody can still read what stands there.
  if (std::exchange(m_unreadable, false)) {
    std::error_code failed;
    std::filesystem::rename(m_fileName.toUTF8(), (m_fileName + u".bak").toUTF8(), failed);
  }
  XMLPriceDecisions document;
  for (const auto& [code, decisions] : m_decisions) {
    for (const auto& [day, close] : decisions.refused) {
      XMLElement& refused = document.addSubElement(new XMLRefusedPrice, REFUSED);
      refused.setAttribute(CODE, code);
      refused.setAttribute(DAY, day.toString(DATE_DISPLAY_DMY));
      refused.setAttribute(CLOSE, close);
    }
    for (const DoubtReason reason : decisions.trusted) {
      XMLElement& trusted = document.addSubElement(new XMLTrustedCode, TRUSTED);
      trusted.setAttribute(CODE, code);
      trusted.setAttribute(REASON, nameOf(reason));
    }
  }
  saveDocument(m_fileName, document, DTD, newElement<XMLPriceDecisions>);
}

} // namespace Tallymoor
