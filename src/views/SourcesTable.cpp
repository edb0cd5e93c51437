#include "views/SourcesTable.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(SourcesTable, ChoiceTable, nullptr, 0)

namespace {

String numberText(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

const PriceStatus::OfSource& sourceOf(const Row& row) {
  return row.payload<PriceStatus::OfSource>();
}

CellResult nameCell(Row& row) {
  return CellResult(shownName(sourceOf(row)));
}

CellResult useCell(Row& row) {
  return CellResult(sourceOf(row).listed.isOn ? u"on" : u"off");
}

CellResult kindCell(Row& row) {
  switch (sourceOf(row).listed.kind) {
  case SourceKind::Locators:
    return CellResult(u"web pages");
  case SourceKind::Folder:
    return CellResult(u"folder");
  case SourceKind::Command:
    return CellResult(u"command");
  default:
    return CellResult(u"service");
  }
}

/// What has to be done before it can be used, or has to be known.
CellResult stateCell(Row& row) {
  const PriceStatus::OfSource& source = sourceOf(row);
  if (source.isSample)
    return CellResult(u"its prices are made up");
  if (source.listed.kind == SourceKind::Document && !source.listed.document)
    return CellResult(u"its document can't be read");
  String text = source.notTried.empty() ? String() : u"not tried here";
  if (source.needsKey)
    text += String(text.empty() ? u"" : u", ") + (source.hasKey ? u"has a key" : u"needs a key");
  return CellResult(text);
}

CellResult requestsCell(Row& row) {
  const PriceStatus::OfSource& source = sourceOf(row);
  const std::size_t limit = source.listed.document ? source.listed.document->limits().perDay : 0;
  if (source.told.requests == 0 && limit == 0)
    return CellResult(String());
  return CellResult(numberText(source.told.requests) + (limit == 0 ? String() : u" of " + numberText(limit)));
}

CellResult saidCell(Row& row) {
  const SourceLog::Summary& told = sourceOf(row).told;
  if (!told.lastAnswered.empty())
    return CellResult(u"prices of " + told.lastAnswered);
  return CellResult(told.lastFailure ? wordsOf(told.lastFailure->reason.fault) : String());
}

} // namespace

String shownName(const PriceStatus::OfSource& source) {
  if (source.isSample)
    return u"Sample market";
  return source.listed.kind == SourceKind::Locators ? u"Locator documents" : source.listed.name;
}

SourcesTable::SourcesTable(FXComposite* parent) : ChoiceTable(u"Sources Table", parent, COMPARE_NUMBER) {
  updateTable();
}

void SourcesTable::fillTable() {
  if (m_wanted.empty() && chosen())
    m_wanted = chosen()->listed.name;
  clear();
  addColumn(std::make_unique<Column>(u"Source", nameCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Use", useCell, COMPARE_TEXT, true, 0));
  addColumn(std::make_unique<Column>(u"Kind", kindCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"State", stateCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Requests", requestsCell, COMPARE_NUMBER))
      .setToolTip(u"Requests of today, as far as they were counted, and how many the source allows");
  addColumn(std::make_unique<Column>(u"Last said", saidCell, COMPARE_TEXT, true, FXTableItem::LEFT))
      .setToolTip(u"What its last answer was since the program was started");
  m_sources.clear();
  for (PriceStatus::OfSource& source : TallymoorInternet::Instance().priceStatus().ofSources()) {
    m_sources.push_back(std::move(source));
    addRow(std::make_unique<Row>(numberText(m_sources.size()), &m_sources.back()));
  }
  rebuild();
  chooseSource(m_wanted);
  m_wanted.clear();
}

const PriceStatus::OfSource* SourcesTable::chosen() const {
  const Row* row = chosenRow();
  return row ? &sourceOf(*row) : nullptr;
}

void SourcesTable::chooseSource(const String& name) {
  std::size_t place = 0;
  for (const PriceStatus::OfSource& source : m_sources) {
    ++place;
    if (source.listed.name == name)
      return choose(numberText(place));
  }
  m_wanted = name;
  choose(String());
}

} // namespace Tallymoor
