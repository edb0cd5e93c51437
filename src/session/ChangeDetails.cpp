#include "session/ChangeDetails.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "session/RecordPieces.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <memory>
#include <optional>

namespace Tallymoor {

namespace {

enum class Form { Text, Day, NotZero, CashType, Splits };

struct Field {
  const char16_t* reference; ///< in the records
  const char16_t* label;
  Form form = Form::Text;
};

/// What the user knows of a kind of entry. The first field tells entries of a kind apart.
struct Kind {
  std::string_view tag;
  const char16_t* name;
  std::unique_ptr<XMLElement> (*make)();
  std::vector<Field> fields;
};

template <class Element>
std::unique_ptr<XMLElement> made() {
  return std::make_unique<Element>();
}

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> KINDS{{"SharePortfolio",
                                        u"Properties",
                                        made<XMLSharePortfolio>,
                                        {{u"Name", u"Name"}, {u"ComparisonIndex", u"Index"}}},
                                       {"HeldShare",
                                        u"Limits",
                                        made<XMLHeldShare>,
                                        {{u"MinPrice", u"Minimum", Form::NotZero},
                                         {u"MaxPrice", u"Maximum", Form::NotZero},
                                         {u"PortfolioMax", u"Portfolio maximum", Form::NotZero}}},
                                       {"SoldShare", u"Sold stock", made<XMLSoldShare>, {}},
                                       {"BuyEvent",
                                        u"Purchase",
                                        made<XMLBuyEvent>,
                                        {{u"BuyDate", u"Bought", Form::Day},
                                         {u"NumHeld", u"Number"},
                                         {u"BuyPrice", u"Price"},
                                         {u"Brokerage", u"Brokerage"},
                                         {u"Comment", u"Comment"},
                                         {u"Adjustments", u"Splits", Form::Splits}}},
                                       {"SellEvent",
                                        u"Sale",
                                        made<XMLSellEvent>,
                                        {{u"SellDate", u"Sold", Form::Day},
                                         {u"BuyDate", u"Bought", Form::Day},
                                         {u"NumHeld", u"Number"},
                                         {u"SellPrice", u"Sale price"},
                                         {u"SellBrokerage", u"Sale brokerage"},
                                         {u"BuyPrice", u"Purchase price"},
                                         {u"BuyBrokerage", u"Purchase brokerage"},
                                         {u"Comment", u"Comment"},
                                         {u"Adjustments", u"Splits", Form::Splits}}},
                                       {"DividendEvent",
                                        u"Dividend",
                                        made<XMLDividendEvent>,
                                        {{u"ReceiveDate", u"Received", Form::Day},
                                         {u"NumHeld", u"Shares"},
                                         {u"Rate", u"Rate"},
                                         {u"PercentFranked", u"Percent franked"},
                                         {u"DRPShares", u"Reinvested shares", Form::NotZero},
                                         {u"DRPRate", u"Reinvested at", Form::NotZero},
                                         {u"ForeignDividend", u"Foreign"},
                                         {u"WithholdingTax", u"Withholding tax", Form::NotZero}}},
                                       {"CashEvent",
                                        u"Cash",
                                        made<XMLCashEvent>,
                                        {{u"Date", u"Date", Form::Day},
                                         {u"Value", u"Amount"},
                                         {u"Type", u"Kind", Form::CashType},
                                         {u"Description", u"Description"}}}};
  return KINDS;
}

String dayText(const String& recorded) {
  try {
    return Date(recorded, DATE_DISPLAY_DMY).toString(DATE_DISPLAY_LOCAL);
  } catch (const Exception&) {
    return recorded;
  }
}

String cashTypeText(const String& recorded) {
  switch (recorded.toLong()) {
  case CASH_EVENT_CREDIT:
    return u"Credit";
  case CASH_EVENT_DEBIT:
    return u"Debit";
  case CASH_EVENT_INTEREST:
    return u"Interest";
  case CASH_EVENT_DEPOSIT:
    return u"Deposit";
  case CASH_EVENT_WITHDRAWAL:
    return u"Withdrawal";
  default:
    return recorded;
  }
}

String splitsText(const XMLElement& parcel, const char16_t* reference) {
  String text;
  for (std::size_t i = 0; i < parcel.numSubElements(reference); ++i) {
    const XMLElement& split = parcel.subElement(reference, i);
    if (!text.empty())
      text += u", ";
    text += dayText(split.subElement(u"StartDate").value()) + u": " + split.subElement(u"Factor").value();
  }
  return text;
}

String fieldText(const XMLElement& entry, const Field& field) {
  if (field.form == Form::Splits)
    return splitsText(entry, field.reference);
  if (entry.numSubElements(field.reference) == 0)
    return String();
  const String& recorded = entry.subElement(field.reference).value();
  if (field.form == Form::Day)
    return dayText(recorded);
  if (field.form == Form::NotZero && recorded.toDouble() == 0.0)
    return String();
  return field.form == Form::CashType ? cashTypeText(recorded) : recorded;
}

/// An entry of the records, read.
struct Entry {
  const RecordPiece* piece;
  const Kind* kind;           ///< null for one that can't be read
  std::vector<String> values; ///< of the fields

  bool isLike(const Entry& other) const {
    return kind == other.kind && piece->tag == other.piece->tag && piece->code == other.piece->code;
  }
  std::size_t countEqual(const Entry& other) const {
    std::size_t equal = 0;
    for (std::size_t i = 0; i < std::min(values.size(), other.values.size()); ++i)
      equal += values[i] == other.values[i] ? 1 : 0;
    return equal;
  }
};

Entry entryOf(const RecordPiece& piece) {
  Entry entry{&piece, nullptr, {}};
  const auto kind = std::find_if(kinds().begin(), kinds().end(),
                                 [&piece](const Kind& known) { return known.tag == piece.tag; });
  if (kind == kinds().end())
    return entry;
  try {
    const std::unique_ptr<XMLElement> element = kind->make();
    element->decode(piece.text.c_str());
    for (const Field& field : kind->fields)
      entry.values.push_back(fieldText(*element, field));
    entry.kind = &*kind;
  } catch (const Exception&) {
    entry.values.clear(); // it is shown as it stands
  }
  return entry;
}

/// An entry before and after; one of the two may be missing.
struct EntryPair {
  std::optional<Entry> before;
  std::optional<Entry> after;
};

/// The one that an entry was before, most likely; the end if there is none.
std::vector<Entry>::iterator mostLike(const Entry& entry, std::vector<Entry>& candidates) {
  constexpr std::size_t MOST_TRIED = 200;
  auto best = candidates.end();
  std::size_t mostEqual = 0;
  std::size_t tried = 0;
  for (auto candidate = candidates.begin(); candidate != candidates.end() && tried < MOST_TRIED;
       ++candidate, ++tried)
    if (const std::size_t equal = candidate->countEqual(entry);
        candidate->isLike(entry) && (equal > mostEqual || best == candidates.end())) {
      best = candidate;
      mostEqual = equal;
    }
  const bool isOnlyOneOfIts =
      entry.kind && (entry.kind->tag == "HeldShare" || entry.kind->tag == "SharePortfolio");
  return isOnlyOneOfIts || mostEqual * 2 >= entry.values.size() ? best : candidates.end();
}

std::vector<EntryPair> pairsOf(std::vector<Entry> removed, std::vector<Entry> added) {
  std::vector<EntryPair> pairs;
  for (Entry& entry : added) {
    EntryPair& pair = pairs.emplace_back();
    if (const auto former = mostLike(entry, removed); former != removed.end()) {
      pair.before = std::move(*former);
      removed.erase(former);
    }
    pair.after = std::move(entry);
  }
  for (Entry& entry : removed)
    pairs.push_back({std::move(entry), std::nullopt});
  return pairs;
}

String nameOf(const Entry& entry) {
  if (!entry.kind)
    return u"In the document";
  String name = entry.kind->name;
  if (!entry.piece->code.empty())
    name += u" of " + entry.piece->code;
  if (!entry.values.empty() && entry.kind->fields.front().form == Form::Day)
    name += u", " + entry.values.front();
  return name;
}

std::vector<ChangeDetail> detailsOf(const EntryPair& pair) {
  const Entry& known = pair.before ? *pair.before : *pair.after;
  const String name = nameOf(known);
  if (!known.kind) {
    const auto textOf = [](const std::optional<Entry>& entry) {
      return entry ? String::fromUTF8(entry->piece->text) : String();
    };
    return {{name, u"Text", textOf(pair.before), textOf(pair.after)}};
  }
  std::vector<ChangeDetail> details;
  for (std::size_t i = 0; i < known.values.size(); ++i) {
    const String before = pair.before ? pair.before->values[i] : String();
    const String after = pair.after ? pair.after->values[i] : String();
    if (before != after)
      details.push_back({name, known.kind->fields[i].label, before, after});
  }
  return details;
}

using Pieces = std::vector<const RecordPiece*>;

constexpr auto isBefore = [](const RecordPiece* a, const RecordPiece* b) { return *a < *b; };

Pieces sorted(const std::vector<RecordPiece>& pieces) {
  Pieces found(pieces.size());
  std::transform(pieces.begin(), pieces.end(), found.begin(),
                 [](const RecordPiece& piece) { return &piece; });
  std::sort(found.begin(), found.end(), isBefore);
  return found;
}

/// Those that stand on one side only.
std::vector<Entry> entriesWithout(const std::vector<RecordPiece>& pieces,
                                  const std::vector<RecordPiece>& others) {
  const Pieces mine = sorted(pieces);
  const Pieces theirs = sorted(others);
  Pieces alone;
  std::set_difference(mine.begin(), mine.end(), theirs.begin(), theirs.end(), std::back_inserter(alone),
                      isBefore);
  std::sort(alone.begin(), alone.end()); // in the order of the records
  std::vector<Entry> entries;
  entries.reserve(alone.size());
  for (const RecordPiece* piece : alone)
    entries.push_back(entryOf(*piece));
  return entries;
}

void addEdits(std::vector<ChangeDetail>& details, const std::vector<TextEdit>& edits) {
  for (const TextEdit& edit : edits)
    details.push_back(
        {u"In the document", u"Text", String::fromUTF8(edit.removed), String::fromUTF8(edit.inserted)});
}

} // namespace

std::vector<ChangeDetail> detailsOf(const ChangeHistory::Difference& difference, std::size_t mostEntries) {
  std::vector<ChangeDetail> details;
  if (!difference.edits.empty()) {
    addEdits(details, difference.edits);
    return details;
  }
  const std::vector<RecordPiece> before = piecesOf(difference.before);
  const std::vector<RecordPiece> after = piecesOf(difference.after);
  const std::vector<EntryPair> pairs = pairsOf(entriesWithout(before, after), entriesWithout(after, before));
  std::size_t listed = 0;
  std::size_t more = 0;
  for (const EntryPair& pair : pairs) {
    std::vector<ChangeDetail> ofPair = detailsOf(pair);
    if (ofPair.empty())
      continue; // it is only written in another way
    if (listed == mostEntries) {
      ++more;
      continue;
    }
    ++listed;
    std::move(ofPair.begin(), ofPair.end(), std::back_inserter(details));
  }
  if (more > 0)
    details.push_back({u"And " + String::fromLong(static_cast<std::int64_t>(more)) + u" more", {}, {}, {}});
  if (details.empty())
    addEdits(details, editsBetween(difference.before, difference.after));
  return details;
}

} // namespace Tallymoor
