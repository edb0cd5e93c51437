#include "views/BackupsTable.h"
#include "foundation/UserInteraction.h"
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(BackupsTable, ChoiceTable, nullptr, 0)

namespace {

const Backup& backupOf(const Row& row) {
  return row.payload<Backup>();
}

String numberText(std::uint64_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

CellResult dayCell(Row& row) {
  return CellResult(backupOf(row).day.toString(DATE_DISPLAY_LOCAL));
}

CellResult portfoliosCell(Row& row) {
  constexpr std::size_t LONGEST = 60;
  const Backup& backup = backupOf(row);
  if (!backup.isReadable)
    return CellResult(u"can't be read");
  String text = numberText(backup.portfolios.size());
  for (std::size_t i = 0; i < backup.portfolios.size(); ++i)
    text += (i == 0 ? u": " : u", ") + backup.portfolios[i];
  return CellResult(text.size() > LONGEST ? String(text.substr(0, LONGEST)) + u"..." : text);
}

CellResult transactionsCell(Row& row) {
  return CellResult(backupOf(row).isReadable ? numberText(backupOf(row).transactions) : String());
}

CellResult sizeCell(Row& row) {
  constexpr std::uint64_t KILOBYTE = 1000;
  return CellResult(numberText((backupOf(row).bytes + KILOBYTE - 1) / KILOBYTE));
}

} // namespace

BackupsTable::BackupsTable(FXComposite* parent) : ChoiceTable(u"Backups Table", parent, COMPARE_NUMBER) {
  setEmptyText(u"There is no copy yet. The first one is made\nwith the first save of a day.");
  updateTable();
}

void BackupsTable::fillTable() {
  const WaitCursor wait;
  clear();
  addColumn(std::make_unique<Column>(u"Day", dayCell, COMPARE_NEWEST_FIRST));
  addColumn(std::make_unique<Column>(u"Portfolios", portfoliosCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Transactions", transactionsCell, COMPARE_NUMBER))
      .setToolTip(u"Purchases that are held, sales, dividends and cash entries");
  addColumn(std::make_unique<Column>(u"Size (kB)", sizeCell, COMPARE_NUMBER));
  m_backups.clear();
  for (Backup& backup : listBackups()) {
    m_backups.push_back(std::move(backup));
    addRow(std::make_unique<Row>(numberText(m_backups.size()), &m_backups.back()));
  }
  rebuild();
  choose(String());
}

const Backup* BackupsTable::chosen() const {
  const Row* row = chosenRow();
  return row ? &backupOf(*row) : nullptr;
}

} // namespace Tallymoor
