#include "pages/PageTables.h"
#include "foundation/Exception.h"
#include "pages/HTMLCursor.h"
#include "pages/PageFigure.h"
#include <algorithm>
#include <optional>

namespace Tallymoor {

namespace {

constexpr char16_t TAG = u'\n'; ///< stands for a tag in the text of a cell

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n' || unit == u'\f';
}

/// What an opening or closing tag says that matters for tables.
struct Tag {
  String name;
  bool isClosing = false;
  bool isHidden = false;
  unsigned columns = 1;
  unsigned rows = 1;
};

/// Reads the attributes of a tag with both kinds of quotation marks, so that no value is taken for text.
class TagReader {
public:
  TagReader(std::u16string_view page, std::size_t position) : m_page(page), m_position(position) {}

  /// From behind the name to behind the ">".
  std::size_t read(Tag& tag) {
    while (skipBlanks(), m_position < m_page.size() && m_page[m_position] != u'>') {
      if (m_page[m_position] == u'/') {
        ++m_position;
        continue;
      }
      const std::u16string_view name =
          until([](char16_t unit) { return isBlank(unit) || unit == u'=' || unit == u'>' || unit == u'/'; });
      skipBlanks();
      take(tag, String(String::Base(name)).toLower(), value());
    }
    return std::min(m_position + 1, m_page.size());
  }

private:
  template <class Ends>
  std::u16string_view until(const Ends& ends) {
    const std::size_t start = m_position;
    do // one unit at least, so that the reader goes on
      ++m_position;
    while (m_position < m_page.size() && !ends(m_page[m_position]));
    return m_page.substr(start, m_position - start);
  }

  void skipBlanks() {
    while (m_position < m_page.size() && isBlank(m_page[m_position]))
      ++m_position;
  }

  std::u16string_view value() {
    if (m_position >= m_page.size() || m_page[m_position] != u'=')
      return {};
    ++m_position;
    skipBlanks();
    if (m_position >= m_page.size() || m_page[m_position] == u'>')
      return {};
    const char16_t quote = m_page[m_position];
    if (quote != u'"' && quote != u'\'')
      return until([](char16_t unit) { return isBlank(unit) || unit == u'>'; });
    const std::u16string_view quoted = until([quote](char16_t unit) { return unit == quote; });
    m_position = std::min(m_position + 1, m_page.size());
    return quoted.substr(1);
  }

  static void take(Tag& tag, const String& name, std::u16string_view value) {
    const auto number = [&] {
      return static_cast<unsigned>(std::clamp(String(String::Base(value)).toLong(), 0, 1000));
    };
    if (name == u"colspan")
      tag.columns = std::max(1U, number());
    else if (name == u"rowspan")
      tag.rows = number();
    else if (name == u"hidden")
      tag.isHidden = true;
    else if (name == u"style")
      tag.isHidden = tag.isHidden || hides(value);
  }

  static bool hides(std::u16string_view style) {
    String text = String(String::Base(style)).toLower();
    text.erase(std::remove_if(text.begin(), text.end(), isBlank), text.end());
    return text.contains(u"display:none") || text.contains(u"visibility:hidden");
  }

  std::u16string_view m_page;
  std::size_t m_position;
};

/// The text of a cell: white space as one blank, or as one line feed where a tag was.
String tidied(const String& raw) {
  String text;
  for (const char16_t unit : raw)
    if (!isBlank(unit))
      text += unit;
    else if (text.empty() || !isBlank(text.back()))
      text += unit == TAG ? TAG : u' ';
    else if (unit == TAG)
      text.back() = TAG;
  return text.trimmed();
}

/// Follows the tags of a page and fills the tables that they open.
class TableReader {
public:
  explicit TableReader(std::u16string_view page) : m_page(page), m_cursor(page) {}

  std::vector<PageTable> read() {
    while (!m_cursor.atEnd()) {
      addText(m_cursor.readText());
      m_cursor.skip(1);
      if (m_cursor.isAt(u"!--"))
        m_cursor.skipComment();
      else if (!m_cursor.atEnd())
        readTag();
    }
    while (!m_open.empty())
      endTable();
    return std::move(m_tables);
  }

private:
  struct OpenTable {
    std::size_t index;
    bool isInFooter = false;
    unsigned shiftedRows = 0; ///< after the present one
    std::optional<PageTableRow> row;
    std::optional<String> cell; ///< raw text
  };

  void readTag() {
    Tag tag;
    tag.isClosing = m_cursor.isAt(u"/");
    m_cursor.skip(tag.isClosing ? 1 : 0);
    tag.name = String(String::Base(m_cursor.readName())).toLower();
    m_cursor = HTMLCursor(m_page, TagReader(m_page, m_cursor.position()).read(tag));
    if (!tag.isClosing && (tag.name == u"script" || tag.name == u"style"))
      skipPast(tag.name);
    else if (!skipsHidden(tag))
      follow(tag);
    if (OpenTable* const table = m_open.empty() ? nullptr : &m_open.back(); table != nullptr && table->cell)
      *table->cell += TAG;
  }

  void follow(const Tag& tag) {
    if (tag.isClosing)
      close(tag);
    else
      open(tag);
  }

  /// Past the closing tag of a script, in any case of letters; to the end of the page if it has none.
  void skipPast(const String& name) {
    while (!m_cursor.atEnd()) {
      m_cursor.readText();
      m_cursor.skip(1);
      if (!m_cursor.isAt(u"/"))
        continue;
      m_cursor.skip(1);
      const HTMLCursor before = m_cursor;
      if (String(String::Base(m_cursor.readName())).toLower() == name) {
        Tag closing;
        m_cursor = HTMLCursor(m_page, TagReader(m_page, m_cursor.position()).read(closing));
        return;
      }
      m_cursor = before;
    }
  }

  /// True inside a hidden tag, which ends with the closing tag of its name.
  bool skipsHidden(const Tag& tag) {
    if (m_hiddenDepth == 0) {
      // A hidden cell keeps its place.
      if (tag.isHidden && !tag.isClosing && tag.name != u"td" && tag.name != u"th" && !isVoid(tag.name)) {
        m_hidden = tag.name;
        m_hiddenDepth = 1;
      }
      return m_hiddenDepth > 0;
    }
    if (tag.name == m_hidden)
      m_hiddenDepth += tag.isClosing ? -1 : 1;
    return true;
  }

  static bool isVoid(const String& name) {
    return name == u"br" || name == u"img" || name == u"input" || name == u"col" || name == u"hr" ||
           name == u"wbr";
  }

  void open(const Tag& tag) {
    if (tag.name == u"table") {
      m_open.push_back({m_tables.size(), false, 0, std::nullopt, std::nullopt});
      m_tables.emplace_back();
    } else if (m_open.empty()) {
      return;
    } else if (tag.name == u"tr") {
      beginRow();
    } else if (tag.name == u"td" || tag.name == u"th") {
      beginCell(tag);
    } else if (isSection(tag.name)) {
      endRow();
      m_open.back().isInFooter = tag.name == u"tfoot";
      m_open.back().shiftedRows = 0;
    }
  }

  void close(const Tag& tag) {
    if (m_open.empty())
      return;
    if (tag.name == u"table")
      endTable();
    else if (tag.name == u"tr" || isSection(tag.name))
      endRow();
    else if (tag.name == u"td" || tag.name == u"th")
      endCell();
  }

  static bool isSection(const String& name) {
    return name == u"thead" || name == u"tbody" || name == u"tfoot";
  }

  void beginRow() {
    endRow();
    OpenTable& table = m_open.back();
    table.row.emplace();
    table.row->isFooter = table.isInFooter;
    table.row->isShifted = table.shiftedRows > 0;
    table.shiftedRows -= table.shiftedRows > 0 ? 1 : 0;
  }

  void beginCell(const Tag& tag) {
    endCell();
    OpenTable& table = m_open.back();
    if (!table.row)
      beginRow();
    table.cell.emplace();
    table.row->spans.push_back(tag.columns);
    if (tag.rows != 1) {
      constexpr unsigned ALL = 65535; // "0" is all rows of the section
      table.row->isShifted = true;
      table.shiftedRows = std::max(table.shiftedRows, tag.rows == 0 ? ALL : tag.rows - 1);
    }
  }

  void endCell() {
    OpenTable& table = m_open.back();
    if (!table.cell)
      return;
    table.row->cells.push_back(tidied(*table.cell));
    table.cell.reset();
  }

  void endRow() {
    endCell();
    OpenTable& table = m_open.back();
    if (table.row)
      m_tables[table.index].push_back(std::move(*table.row));
    table.row.reset();
  }

  void endTable() {
    endRow();
    m_open.pop_back();
  }

  void addText(std::u16string_view text) {
    if (m_open.empty() || !m_open.back().cell || m_hiddenDepth > 0)
      return;
    String plain{String::Base(text)};
    std::replace(plain.begin(), plain.end(), TAG, u' ');
    *m_open.back().cell += withCharacters(plain);
  }

  std::u16string_view m_page;
  HTMLCursor m_cursor;
  std::vector<PageTable> m_tables;
  std::vector<OpenTable> m_open; ///< the innermost at the end
  String m_hidden;               ///< name of the outermost hidden tag
  int m_hiddenDepth = 0;
};

} // namespace

std::vector<PageTable> readPageTables(std::u16string_view page) {
  return TableReader(page).read();
}

} // namespace Tallymoor
