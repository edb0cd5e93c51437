#pragma once
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Tallymoor {

/// A cell of a generated page: its text and what a careful person reads in it.
struct PageCell {
  std::string text;
  std::string column;           ///< The heading it was made for.
  std::optional<double> number; ///< Empty if it states none.
  std::optional<long> day;      ///< For a date: days since 1 January 1970.
  bool isUnclear = false;       ///< States nothing, even if it has digits.
};

/// The values that a page states for a day, by heading. Several only if the page contradicts itself.
using DayStatements = std::map<std::string, std::set<double>>;

/// A page with a table of prices, all different, and the mutations applied to it. The first mutations change
/// cells, columns and rows, and with them what the page states. The later ones change only the notation.
class MutatedHistoryPage {
public:
  explicit MutatedHistoryPage(unsigned seed);

  const std::string& html() const { return m_html; }
  /// The stated values by day.
  const std::map<long, DayStatements>& statements() const { return m_statements; }
  /// The mutations applied, for failure messages.
  const std::string& history() const { return m_history; }

private:
  using Row = std::vector<PageCell>;

  std::size_t pick(std::size_t count) { return m_random() % count; }
  bool chance(std::size_t oneIn) { return pick(oneIn) == 0; }
  void note(const std::string& what) { m_history += what + "; "; }

  void makeRows();
  PageCell priceCell(const std::string& column);
  void mutateTable();
  void mutateCell(PageCell& cell);
  void changeDigit(PageCell& cell);
  void changeWriting(PageCell& cell);
  void state();
  void write();
  std::string tag(const std::string& name);
  std::string closing(const std::string& name);
  std::string between();
  std::string written(const std::string& text);
  void mutateTags();

  std::mt19937 m_random;
  long m_lastPrice;
  std::vector<std::string> m_headings;
  std::vector<Row> m_rows;
  bool m_ragged = false; ///< A row has more or fewer cells than there are headings.
  bool m_untidy;         ///< Some closing tags are omitted, and similar.
  std::string m_html;
  std::map<long, DayStatements> m_statements;
  std::string m_history;
};

/// A page with the current price next to its label, mutated in the same way.
class MutatedQuotePage {
public:
  explicit MutatedQuotePage(unsigned seed);

  const std::string& html() const { return m_html; }
  /// The prices next to "Last Trade:".
  const std::set<double>& prices() const { return m_prices; }

private:
  std::string m_html;
  std::set<double> m_prices;
};

/// Removes, duplicates, exchanges or adds a tag, changes its case, or truncates the page.
std::string withOneTagMutated(const std::string& html, std::mt19937& random);

} // namespace Tallymoor
