#include "market/SharePriceCache.h"
#include "foundation/Amounts.h"
#include "foundation/Constants.h"
#include "foundation/FileName.h"
#include "foundation/FileReplacement.h"
#include "market/PriceCacheFile.h"
#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

namespace Tallymoor {

namespace {

constexpr int LONGEST_CLOSURE = SharePriceCache::LONGEST_CLOSURE;
const String EXTENSION = u".xml";

/// Runs the work for every item, then throws the first failure, if any, as Exception.
template <class Items, class Work>
void forEachThenThrow(Items&& items, Work work) {
  std::optional<Exception> first;
  for (auto& item : items) {
    try {
      work(item);
    } catch (const Exception& exception) {
      if (!first)
        first.emplace(exception.message());
    }
  }
  if (first)
    throw Exception(*first);
}

/// Full paths of the folder's "*.xml", sorted; none when there is no such folder.
std::vector<String> xmlFilesIn(const String& directory) {
  std::vector<String> paths;
  std::error_code none;
  for (const auto& item : std::filesystem::directory_iterator(directory.toUTF8(), none)) {
    const String path = String::fromUTF8(item.path().string());
    if (path.ends_with(EXTENSION) && !item.is_directory(none))
      paths.push_back(path);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

} // namespace

SharePriceCache::SharePriceCache(const String& directory) : m_directory(directory) {
  removeLeftoverTemporaries(directory);
}

String SharePriceCache::pathOf(const String& code) const {
  const String prefix = PRICE_CACHE_NAME + u'.';
  return m_directory + prefix + fileNameFor(code, prefix.size() + EXTENSION.size()) + EXTENSION;
}

CachedShare& SharePriceCache::share(const String& code) {
  Entry& found = entry(code);
  if (found.failure) {
    ++m_changeStamp;
    const XMLException failure = *std::exchange(found.failure, std::nullopt);
    throw failure;
  }
  return found.share;
}

CachedShare& SharePriceCache::shareOrEmpty(const String& code) {
  return entry(code).share;
}

SharePriceCache::Entry& SharePriceCache::entry(const String& code) {
  const auto [place, isNew] = m_entries.try_emplace(code);
  if (isNew)
    load(code, place->second);
  return place->second;
}

void SharePriceCache::load(const String& code, Entry& entry) const {
  const String path = pathOf(code);
  try {
    switch (filePresence(path)) {
    case FilePresence::Missing:
      break;
    case FilePresence::Unusable: // not left to the XML library, which loses memory over a folder
      throw XMLException(u"SharePriceCache::load - can't read " + path);
    case FilePresence::RegularFile:
      entry.share = readPriceCache(path).share;
    }
  } catch (const Exception& exception) {
    entry.share.unreadable = true;
    entry.failure.emplace(exception);
  }
}

namespace {

/// The stretch of days from the first close of a page on, in which each day gets a row.
struct Stretch {
  Date first;
  double closeBefore; ///< what a day without trade at its head takes over
};

Stretch stretchOf(const SharePriceCache::Rows& known, const SharePriceCache::Rows& fetched,
                  const HistoryRange& range) {
  Stretch fromFirstRow{fetched.begin()->first, fetched.begin()->second.close};
  const auto before = known.find(range.start.plusDays(-1));
  if (before == known.end() || showsAsZero(before->second.close) ||
      fromFirstRow.first > range.start.plusDays(LONGEST_CLOSURE))
    return fromFirstRow;
  return {std::min(fromFirstRow.first, range.start), before->second.close};
}

} // namespace

SharePriceCache::Closes SharePriceCache::merge(const String& code, const Rows& fetched,
                                               const HistoryRange& range) {
  CachedShare& known = shareOrEmpty(code);
  known.modified = true;
  ++m_changeStamp;
  Closes changed;
  if (fetched.empty())
    return changed;
  const auto store = [&](const Date& day, const ShareValue& value) {
    const auto [row, isNew] = known.values.try_emplace(day, value);
    const bool losesPrice = showsAsZero(value.close) && !showsAsZero(row->second.close);
    if (!isNew && (row->second.origin == PriceOrigin::Typed || losesPrice))
      return;
    if (isNew || !showsTheSame(row->second.close, value.close, PRICE_CACHE_DECIMALS))
      changed.emplace_back(day, value.close);
    row->second = value;
  };
  const Date lastDay = std::min(range.end, Date::realToday());
  for (auto row = fetched.begin(); row != fetched.end() && row->first <= Date::realToday(); ++row)
    store(row->first, row->second);
  Stretch stretch = stretchOf(known.values, fetched, range);
  for (Date day = stretch.first; day <= lastDay; day.addDays(1)) {
    const ShareValue* row = known.find(day);
    // A day that the table passes over had no trade, whatever the price that was current then.
    if (!row || row->origin == PriceOrigin::Filled ||
        (row->origin == PriceOrigin::Current && day < fetched.rbegin()->first))
      store(day, {.close = stretch.closeBefore, .origin = PriceOrigin::Filled});
    stretch.closeBefore = known.find(day)->close;
  }
  return changed;
}

void SharePriceCache::noteCurrentPrice(const String& code, const Date& day, double price) {
  CachedShare& known = shareOrEmpty(code);
  if (known.isBad || day > Date::realToday())
    return;
  const auto [row, isNew] = known.values.try_emplace(day, ShareValue{.origin = PriceOrigin::Current});
  if (row->second.origin == PriceOrigin::Source || row->second.origin == PriceOrigin::Typed)
    return;
  if (isNew || row->second.close != price || row->second.origin != PriceOrigin::Current)
    ++m_changeStamp;
  row->second.close = price;
  row->second.origin = PriceOrigin::Current;
  known.modified = true;
}

SharePriceCache::Closes SharePriceCache::setTypedPrice(const String& code, const Date& day, double close) {
  if (day > Date::realToday())
    return {};
  CachedShare& known = shareOrEmpty(code);
  known.modified = true;
  ++m_changeStamp;
  ShareValue& typed = known.values[day];
  typed.close = close;
  typed.volume = 0;
  typed.origin = PriceOrigin::Typed;
  Closes changed{{day, close}};
  // Days without trade have the close before them.
  for (auto row = known.values.find(day.plusDays(1));
       row != known.values.end() && row->second.origin == PriceOrigin::Filled; ++row) {
    row->second.close = close;
    changed.emplace_back(row->first, close);
  }
  return changed;
}

void SharePriceCache::setTypedRange(const String& code, const Date& day, double high, double low) {
  CachedShare& known = shareOrEmpty(code);
  const auto row = known.values.find(day);
  if (row == known.values.end())
    return;
  row->second.high = high;
  row->second.low = low;
  row->second.origin = PriceOrigin::Typed;
  known.modified = true;
  ++m_changeStamp;
}

std::optional<double> SharePriceCache::typedPrice(const String& code, const Date& day) {
  const ShareValue* row = shareOrEmpty(code).find(day);
  return row && row->origin == PriceOrigin::Typed ? std::optional(row->close) : std::nullopt;
}

SharePriceCache::Closes SharePriceCache::removeTypedPrice(const String& code, const Date& day) {
  if (!typedPrice(code, day))
    return {};
  CachedShare& known = shareOrEmpty(code);
  known.modified = true;
  ++m_changeStamp;
  auto row = known.values.find(day);
  const std::optional<KnownClose> before = lastCloseBefore(code, day);
  Closes removed;
  do {
    removed.emplace_back(row->first, before ? before->close : 0.0);
    row = known.values.erase(row);
  } while (row != known.values.end() && row->second.origin == PriceOrigin::Filled);
  return removed;
}

std::optional<KnownClose> SharePriceCache::closeOn(const String& code, const Date& day) {
  const CachedShare& known = shareOrEmpty(code);
  const auto row = known.values.find(day);
  if (row == known.values.end() || showsAsZero(row->second.close))
    return std::nullopt;
  return KnownClose{day, row->second.close, isFinal(known, row)};
}

std::optional<KnownClose> SharePriceCache::lastCloseBefore(const String& code, const Date& day) {
  const CachedShare& known = shareOrEmpty(code);
  for (auto row = known.values.lower_bound(day); row != known.values.begin();)
    if (--row; !showsAsZero(row->second.close))
      return KnownClose{row->first, row->second.close, isFinal(known, row)};
  return std::nullopt;
}

std::optional<KnownClose> SharePriceCache::lastTradedClose(const String& code, const Date& day) {
  return lastTradedClose(shareOrEmpty(code), day);
}

std::optional<KnownClose> SharePriceCache::lastTradedClose(const CachedShare& known, const Date& day) {
  for (auto row = known.values.upper_bound(day); row != known.values.begin();)
    if (--row; row->second.origin != PriceOrigin::Filled && !showsAsZero(row->second.close))
      return KnownClose{row->first, row->second.close, isFinal(known, row)};
  return std::nullopt;
}

/// The last close of a table may be that of a day that was not over yet; a later one shows that it was. Some
/// stocks have none: they rest on age.
bool SharePriceCache::isFinal(const CachedShare& known, Rows::const_iterator row) {
  switch (row->second.origin) {
  case PriceOrigin::Typed:
    return true;
  case PriceOrigin::Current:
    return known.isBad;
  default:
    break;
  }
  if (known.isBad || row->first < Date::realToday().plusDays(-LONGEST_CLOSURE))
    return true;
  while (++row != known.values.end())
    if (row->second.origin == PriceOrigin::Source)
      return true;
  return false;
}

bool SharePriceCache::isBad(const String& code) {
  if (!m_entries.contains(code) && isSurelyListed(pathOf(code)))
    return false;
  return shareOrEmpty(code).isBad;
}

void SharePriceCache::setBad(const String& code, bool bad) {
  CachedShare& known = shareOrEmpty(code);
  if (known.isBad == bad)
    return;
  known.isBad = bad;
  known.modified = true;
  ++m_changeStamp;
}

std::vector<String> SharePriceCache::badCodes() {
  loadAllFiles();
  std::vector<String> codes;
  for (const auto& [code, entry] : m_entries)
    if (entry.share.isBad)
      codes.push_back(code);
  std::sort(codes.begin(), codes.end());
  return codes;
}

void SharePriceCache::loadAllFiles() {
  const String prefix = m_directory + PRICE_CACHE_NAME + u'.';
  for (const String& path : xmlFilesIn(m_directory)) {
    if (!path.startsWith(prefix) || filePresence(path) != FilePresence::RegularFile)
      continue;
    try {
      PriceCacheFile file = readPriceCache(path);
      // A file under another code's name is not what a later run would read for its own.
      if (pathOf(file.code) == path && !m_entries.contains(file.code))
        m_entries[file.code].share = std::move(file.share);
    } catch (const Exception&) {
      // The next request for this code's price reports it.
    }
  }
}

SharePriceCache::Forgotten SharePriceCache::forgetFetched() {
  loadAllFiles();
  Forgotten forgotten;
  for (auto& [code, entry] : m_entries) {
    Rows& rows = entry.share.values;
    for (auto row = rows.begin(); row != rows.end();) {
      const auto next = std::next(row);
      if (row->second.origin != PriceOrigin::Typed && row->second.origin != PriceOrigin::Unknown)
        forgotten[code].insert(rows.extract(row));
      row = next;
    }
    entry.share.modified = entry.share.modified || forgotten.contains(code);
  }
  ++m_changeStamp;
  return forgotten;
}

// The rows are taken out of it.
void SharePriceCache::putBack(Forgotten forgotten) { // NOLINT(performance-unnecessary-value-param)
  for (auto& [code, rows] : forgotten) {
    CachedShare& known = shareOrEmpty(code);
    known.values.merge(rows);
    known.modified = true;
  }
  ++m_changeStamp;
}

void SharePriceCache::save() {
  forEachThenThrow(m_entries, [this](auto& item) {
    if (!item.second.share.unreadable)
      save(item.first);
  });
}

void SharePriceCache::save(const String& code) {
  CachedShare& share = shareOrEmpty(code);
  if (share.unreadable)
    throw Exception(u"The prices of " + code + u" are not stored, since their file can't be read: " +
                    pathOf(code));
  if (!share.modified)
    return;
  writePriceCache(pathOf(code), code, share);
  share.modified = false;
}

void SharePriceCache::clear() {
  m_entries.clear();
  ++m_changeStamp;
  forEachThenThrow(xmlFilesIn(m_directory), [](const String& path) { removeFile(path); });
}

} // namespace Tallymoor
