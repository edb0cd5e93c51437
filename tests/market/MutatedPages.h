#pragma once
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Tallymoor {

/// A cell of a made-up page: its text, and what a careful person takes from it, whatever the program makes of
/// it.
struct PageCell {
  std::string text;
  std::string column;           ///< the heading that it was made for
  std::optional<double> number; ///< nothing where it states none
  std::optional<long> day;      ///< of a date, days from 1 January 1970
  bool isUnclear = false;       ///< states nothing, whatever its digits
};

/// What a page states about one day: every acceptable figure, by heading. There are several only where a page
/// contradicts itself.
using DayStatements = std::map<std::string, std::set<double>>;

/// A page with a table of prices, all of them different, and what was done to it. First cells, columns and
/// rows are changed, and with them what the page states; then how it is written, which changes nothing that
/// it states.
class MutatedHistoryPage {
public:
  explicit MutatedHistoryPage(unsigned seed);

  const std::string& html() const { return m_html; }
  /// What it states, by day.
  const std::map<long, DayStatements>& statements() const { return m_statements; }
  /// Names what was done, for a failure's message.
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
  bool m_ragged = false; ///< a row has more or fewer cells than there are headings
  bool m_untidy;         ///< closing tags are left out now and then, and so on
  std::string m_html;
  std::map<long, DayStatements> m_statements;
  std::string m_history;
};

/// A page with the current price beside its label, among others, mutated likewise.
class MutatedQuotePage {
public:
  explicit MutatedQuotePage(unsigned seed);

  const std::string& html() const { return m_html; }
  /// The prices that stand beside "Last Trade:".
  const std::set<double>& prices() const { return m_prices; }

private:
  std::string m_html;
  std::set<double> m_prices;
};

/// Drops, doubles, exchanges or adds one tag of a page, changes the case of one, or cuts the page off.
std::string withOneTagMutated(const std::string& html, std::mt19937& random);

} // namespace Tallymoor
