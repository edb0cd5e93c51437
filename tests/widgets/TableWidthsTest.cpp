#include "foundation/Settings.h"
#include "support/windows/WindowTest.h"
#include "widgets/Table.h"
#include <gmock/gmock.h>
#include <list>
#include <map>

namespace Tallymoor {
namespace {

/// Counts the texts that are measured.
class CountingFont : public FXFont {
public:
  explicit CountingFont(FXApp& app) : FXFont(&app, "sans", 9) { create(); }
  FXint getTextWidth(const FXString& text) const override {
    ++measured;
    return FXFont::getTextWidth(text);
  }
  mutable int measured = 0;
};

struct Figures {
  String key;
  String first;
  String second;
  bool changed = true;
};

/// Keeps its columns and each row whose key stays.
class KeepingTable : public Table {
public:
  explicit KeepingTable(FXComposite* parent) : Table(u"Keeping Table", parent, true, nullptr) {}

  std::list<Figures> figures;

  static CellResult first(Row& row) { return CellResult(row.payload<Figures>().first); }
  static CellResult second(Row& row) { return CellResult(row.payload<Figures>().second); }

  std::vector<FXint> widths() const {
    std::vector<FXint> all{getRowHeaderWidth()};
    for (FXint column = 0; column < getNumColumns(); ++column)
      all.push_back(getColumnWidth(column));
    return all;
  }
  /// What the widths must be, measured text by text.
  std::vector<FXint> rightWidths() const {
    const auto widthOf = [this](const String& text) {
      return getFont()->getTextWidth(text.toUTF8().c_str());
    };
    std::vector<FXint> all{0, widthOf(u"First"), widthOf(u"Second")};
    for (const Figures& row : figures) {
      all[0] = std::max(all[0], widthOf(row.key));
      all[1] = std::max(all[1], widthOf(row.first));
      all[2] = std::max(all[2], widthOf(row.second));
    }
    for (FXint& width : all)
      width += 20;
    return all;
  }

protected:
  void fillTable() override {
    const auto rowsBefore = std::exchange(m_rows, {});
    if (columns().empty()) {
      addColumn(std::make_unique<Column>(u"First", first));
      addColumn(std::make_unique<Column>(u"Second", second));
    }
    releaseRows();
    for (Figures& figures : this->figures) {
      const auto before = rowsBefore.find(&figures);
      if (before == rowsBefore.end())
        m_rows[&figures] = &addRow(std::make_unique<Row>(figures.key, &figures));
      else
        keepRow(*(m_rows[&figures] = before->second));
    }
    rebuild();
  }

private:
  std::map<const Figures*, Row*> m_rows;
};

class CountedTableWidthsTest : public WindowTest {
protected:
  static constexpr int ROWS = 500;

  void SetUp() override {
    WindowTest::SetUp();
    m_font = std::make_unique<CountingFont>(app());
    m_table = new KeepingTable(mainWindow().contentFrame());
    m_table->setFont(m_font.get());
    m_table->setRowHeaderFont(m_font.get());
    m_table->setColumnHeaderFont(m_font.get());
    for (int i = 0; i < ROWS; ++i)
      m_table->figures.push_back({u"K" + String::fromLong(1000 + i), String::fromLong(i * i), u"text"});
    m_table->figures.back().first = u"the widest of the first column";
    m_table->updateTable();
    m_table->create();
    letEventsPass();
  }
  void TearDown() override {
    delete m_table;
    WindowTest::TearDown();
  }

  KeepingTable& table() { return *m_table; }
  /// How many texts an update measures.
  int measuredByUpdate() {
    m_font->measured = 0;
    table().updateTable();
    return m_font->measured;
  }

private:
  std::unique_ptr<CountingFont> m_font;
  KeepingTable* m_table = nullptr;
};

TEST_F(CountedTableWidthsTest, OnlyTextsThatAreNewAreMeasured) {
  EXPECT_EQ(table().rightWidths(), table().widths());
  EXPECT_EQ(0, measuredByUpdate());

  table().figures.back().first = u"1";
  EXPECT_EQ(1, measuredByUpdate()) << "the widest text has gone, and the others are known";
  EXPECT_EQ(table().rightWidths(), table().widths());

  table().figures.push_back({u"K2000", u"a new row, wider than all others", u"second"});
  EXPECT_EQ(3, measuredByUpdate());
  EXPECT_EQ(table().rightWidths(), table().widths());

  table().figures.pop_back();
  EXPECT_EQ(0, measuredByUpdate());
  EXPECT_EQ(table().rightWidths(), table().widths());
}

TEST_F(CountedTableWidthsTest, TheNextUpdateHoldsWhatARefreshedRowNeeds) {
  String& text = table().figures.front().first;
  for (const char16_t* now : {u"a very long text that a price brought, far wider than the column", u"1"}) {
    text = now;
    table().refreshRow(*table().rowAt(0));
    EXPECT_EQ(0, measuredByUpdate());
    EXPECT_EQ(table().rightWidths(), table().widths());
  }
}

TEST_F(CountedTableWidthsTest, TheChoiceOfColumnsIsReadAgainOnlyAfterAChange) {
  const auto shown = [this] { return table().visibleColumns().size(); };
  EXPECT_EQ(2u, shown());
  Settings::Instance().writeUnsigned(u"Visible Columns Keeping Table", u"First", 0);
  table().updateTable();
  EXPECT_EQ(1u, shown());
  EXPECT_EQ(table().rightWidths()[2], table().getColumnWidth(0));
  Settings::Instance().deleteSection(u"Visible Columns Keeping Table");
  table().updateTable();
  EXPECT_EQ(2u, shown());
  EXPECT_EQ(table().rightWidths(), table().widths());
}

} // namespace
} // namespace Tallymoor
