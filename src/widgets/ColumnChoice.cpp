#include "widgets/ColumnChoice.h"
#include "foundation/Settings.h"
#include "widgets/Column.h"

namespace Tallymoor {

namespace {

const String UPGRADES = u"Upgrades";

String sectionOf(const String& tableName) {
  return u"Visible Columns " + tableName;
}

} // namespace

ColumnChoice::ColumnChoice(const String& tableName) : m_section(sectionOf(tableName)) {
  Settings& settings = Settings::Instance();
  if (settings.readUnsigned(UPGRADES, m_section, 0) != 0)
    return;
  settings.deleteSection(m_section);
  settings.writeUnsigned(UPGRADES, m_section, 1);
}

bool ColumnChoice::isVisible(const Column& column) const {
  return Settings::Instance().readUnsigned(m_section, column.title(), column.defaultVisible()) != 0;
}

void ColumnChoice::setVisible(const Column& column, bool visible) {
  Settings::Instance().writeUnsigned(m_section, column.title(), visible);
}

void ColumnChoice::rename(const String& oldTableName, const String& newTableName) {
  const String from = sectionOf(oldTableName);
  const String to = sectionOf(newTableName);
  Settings& settings = Settings::Instance();
  settings.deleteSection(to);
  for (const String& title : settings.keys(from))
    settings.writeUnsigned(to, title, settings.readUnsigned(from, title));
  settings.writeUnsigned(UPGRADES, to, settings.readUnsigned(UPGRADES, from));
  settings.deleteSection(from);
  settings.deleteEntry(UPGRADES, from);
}

void ColumnChoice::declare(const Column& column) {
  if (!column.defaultVisible() && !Settings::Instance().hasEntry(m_section, column.title()))
    setVisible(column, false);
}

} // namespace Tallymoor
