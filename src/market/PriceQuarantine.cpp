#include "market/PriceQuarantine.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "market/PriceCacheFile.h"
#include "xml/DocumentFile.h"
#include "xml/PriceDecisionsDocument.h"
#include <algorithm>
#include <filesystem>

namespace Tallymoor {

namespace {

const String REFUSED = u"Refused";
const String TRUSTED = u"Trusted";
const String CURRENCY = u"Currency";
const String TO_COME = u"ToCome";
const String NAME = u"name";
const String DECISION = u"decision";
const String ACCEPTED = u"accepted";
const String CODE = u"code";
const String DAY = u"day";
const String CLOSE = u"close";
const String REASON = u"reason";
const String DTD = u"PriceDecisions.dtd";

struct NamedReason {
  DoubtReason reason;
  std::u16string_view name;
};
constexpr NamedReason NAMED_REASONS[] = {
    {DoubtReason::Jump, u"jump"},         {DoubtReason::Unit, u"unit"},
    {DoubtReason::Range, u"range"},       {DoubtReason::Contradiction, u"contradiction"},
    {DoubtReason::Currency, u"currency"}, {DoubtReason::Future, u"future"}};

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

/// Where nobody knows the user's currency, the first one that a source tells of a stock is the stock's.
template <class Write>
void keepFirst(String& known, const String& told, Write write) {
  if (!known.empty())
    return;
  known = told;
  try {
    write();
  } catch (const Exception&) {
    // It counts for this run.
  }
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
                                             const DataSource::Rows& fetched) {
  for (const auto& [day, value] : fetched.future)
    if (!isTrusted(code, DoubtReason::Future))
      keepAside(code, {.day = day, .value = value, .reason = DoubtReason::Future, .known = std::nullopt});
  if (isForeign(code, fetched.currency)) {
    keepForeignAside(code, known, fetched);
    return {};
  }
  if (!fetched.currency.empty() && usualCurrency(code).empty())
    keepFirst(m_decisions[code].currency, fetched.currency, [this] { write(); });
  CheckedPrices checked = checkPrices(known, fetched, !hasOpenLevel(code));
  for (const DoubtfulPrice& price : checked.doubtful)
    if (isTrusted(code, price.reason))
      checked.good.emplace(price.day, price.value);
    else
      keepAside(code, price);
  removeSettled(code, checked.good);
  addThoseThatCame(code, known, checked.good);
  return std::move(checked.good);
}

void PriceQuarantine::keepForeignAside(const String& code, const CachedShare& known,
                                       const DataSource::Rows& fetched) {
  for (const auto& [day, value] : fetched)
    if (const ShareValue* row = known.find(day); !row || row->origin != PriceOrigin::Typed)
      keepAside(code, {.day = day,
                       .value = value,
                       .reason = DoubtReason::Currency,
                       .known = std::nullopt,
                       .currency = fetched.currency,
                       .usualCurrency = usualCurrency(code)});
}

void PriceQuarantine::addThoseThatCame(const String& code, const CachedShare& known,
                                       SharePriceCache::Rows& rows) const {
  const auto decisions = m_decisions.find(code);
  if (decisions == m_decisions.end())
    return;
  const Date today = Date::realToday();
  for (const auto& [day, close] : decisions->second.toCome) {
    const ShareValue* row = known.find(day);
    const bool isKnown = row && (row->origin == PriceOrigin::Source || row->origin == PriceOrigin::Typed);
    if (day <= today && !isKnown)
      rows.try_emplace(day, ShareValue{.close = close.toDouble()});
  }
}

/// An index is in points, whatever currency the source tells.
bool PriceQuarantine::isForeign(const String& code, const String& currency) const {
  if (currency.empty() || code.startsWith(u"^") || isTrusted(code, DoubtReason::Currency))
    return false;
  const String usual = usualCurrency(code);
  return !usual.empty() && currency != usual;
}

String PriceQuarantine::usualCurrency(const String& code) const {
  const auto decisions = m_decisions.find(code);
  const bool isAccepted = decisions != m_decisions.end() && !decisions->second.currency.empty();
  return isAccepted ? decisions->second.currency : Platform::Instance().currencyCode();
}

bool PriceQuarantine::admitCurrent(const String& code, const CachedShare& known, const Date& day,
                                   const AnsweredPrice& price) {
  const ShareValue value{.close = price.price, .origin = PriceOrigin::Current};
  if (price.day && *price.day > lastBelievableDay() && !isTrusted(code, DoubtReason::Future)) {
    keepAside(code,
              {.day = *price.day, .value = value, .reason = DoubtReason::Future, .known = std::nullopt});
    return false;
  }
  if (isForeign(code, price.currency)) {
    keepAside(code, {.day = day,
                     .value = value,
                     .reason = DoubtReason::Currency,
                     .known = std::nullopt,
                     .currency = price.currency,
                     .usualCurrency = usualCurrency(code)});
    return false;
  }
  if (!price.currency.empty() && usualCurrency(code).empty())
    keepFirst(m_decisions[code].currency, price.currency, [this] { write(); });
  const auto doubtful = checkCurrentPrice(known, day, price.price);
  if (!doubtful || isTrusted(code, doubtful->reason)) {
    removeSettled(code, {{day, value}});
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

/// Or decided for good in another way.
bool PriceQuarantine::isRefused(const String& code, const DoubtfulPrice& price) const {
  const auto decisions = m_decisions.find(code);
  if (decisions == m_decisions.end())
    return false;
  const auto& [trusted, refused, currency, refusedCurrencies, toCome] = decisions->second;
  if (price.reason == DoubtReason::Currency && refusedCurrencies.contains(price.currency))
    return true;
  if (price.reason == DoubtReason::Future && toCome.contains(price.day))
    return true;
  return refused.contains({price.day, closeText(price.value.close)});
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

/// What outlives the prices themselves. True if anything does.
bool PriceQuarantine::noteAccepted(const String& code, const Prices& prices) {
  bool isNoted = false;
  for (const auto& [day, price] : prices) {
    if (price.reason == DoubtReason::Currency)
      m_decisions[code].currency = price.currency;
    else if (price.reason == DoubtReason::Future)
      m_decisions[code].toCome[day] = closeText(price.value.close);
    else
      continue;
    isNoted = true;
  }
  return isNoted;
}

PriceQuarantine::Prices PriceQuarantine::accept(const String& code) {
  Prices prices = takeOut(code);
  const bool isNoted = noteAccepted(code, prices);
  tellChanged();
  if (isNoted)
    write();
  return prices;
}

PriceQuarantine::Prices PriceQuarantine::acceptFromNowOn(const String& code) {
  Prices prices = takeOut(code);
  noteAccepted(code, prices);
  for (const auto& [day, price] : prices)
    m_decisions[code].trusted.insert(price.reason);
  tellChanged();
  write();
  return prices;
}

void PriceQuarantine::refuse(const String& code) {
  for (const auto& [day, price] : takeOut(code))
    if (price.reason == DoubtReason::Currency)
      m_decisions[code].refusedCurrencies.insert(price.currency);
    else
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
  for (std::size_t i = 0; i < document.numSubElements(CURRENCY); ++i) {
    const XMLElement& currency = document.subElement(CURRENCY, i);
    Decisions& decisions = m_decisions[currency.attribute(CODE)];
    if (currency.attribute(DECISION) == ACCEPTED)
      decisions.currency = currency.attribute(NAME);
    else
      decisions.refusedCurrencies.insert(currency.attribute(NAME));
  }
  for (std::size_t i = 0; i < document.numSubElements(TO_COME); ++i) {
    const XMLElement& price = document.subElement(TO_COME, i);
    m_decisions[price.attribute(CODE)].toCome[Date(price.attribute(DAY), DATE_DISPLAY_DMY)] =
        price.attribute(CLOSE);
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
    const auto add = [&document, &code = code](XMLElement* element, const String& kind,
                                               const std::vector<std::pair<String, String>>& values) {
      XMLElement& added = document.addSubElement(element, kind);
      added.setAttribute(CODE, code);
      for (const auto& [name, value] : values)
        added.setAttribute(name, value);
    };
    const auto dayText = [](const Date& day) { return day.toString(DATE_DISPLAY_DMY); };
    for (const auto& [day, close] : decisions.refused)
      add(new XMLRefusedPrice, REFUSED, {{DAY, dayText(day)}, {CLOSE, close}});
    for (const DoubtReason reason : decisions.trusted)
      add(new XMLTrustedCode, TRUSTED, {{REASON, nameOf(reason)}});
    if (!decisions.currency.empty())
      add(new XMLPriceCurrency, CURRENCY, {{NAME, decisions.currency}, {DECISION, ACCEPTED}});
    for (const String& currency : decisions.refusedCurrencies)
      add(new XMLPriceCurrency, CURRENCY, {{NAME, currency}, {DECISION, u"refused"}});
    for (const auto& [day, close] : decisions.toCome)
      add(new XMLPriceToCome, TO_COME, {{DAY, dayText(day)}, {CLOSE, close}});
  }
  saveDocument(m_fileName, document, DTD, newElement<XMLPriceDecisions>);
}

} // namespace Tallymoor
