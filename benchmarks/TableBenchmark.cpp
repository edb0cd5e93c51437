// Rebuilds a table of 5,000 rows and 20 columns, compared with formatting its 100,000 numbers, and refreshes
// one row, compared with the rebuild. Needs no display.
#include "Ratio.h"
#include "widgets/Table.h"
#include <chrono>
#include <cstdlib>
#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace Tallymoor {
namespace {

constexpr int ROWS = 5000;
constexpr int COLUMNS = 20;
constexpr int ROUNDS = 9;
constexpr int REFRESHES = 200;
constexpr double REBUILD_LIMIT = 25.0;
constexpr double REFRESH_LIMIT = 0.001;

using Figures = std::vector<double>;

/// A column is identified by its function, so each of the twenty needs its own.
template <int COLUMN>
CellResult figure(Row& row) {
  return CellResult(row.payload<Figures>()[COLUMN], CELL_NUMBER);
}

class FigureTable : public Table {
public:
  FigureTable(FXComposite* parent, std::vector<Figures>& figures)
      : Table(u"Figures", parent, true, nullptr), m_figures(figures) {
    updateTable();
  }

protected:
  void fillTable() override {
    clear();
    declare(std::make_integer_sequence<int, COLUMNS>());
    int number = 10000;
    for (Figures& figures : m_figures)
      addRow(std::make_unique<Row>(String::fromLong(number++), &figures));
    rebuild();
  }

private:
  template <int... COLUMN>
  void declare(std::integer_sequence<int, COLUMN...>) {
    (addColumn(
         std::make_unique<Column>(u"Column " + String::fromLong(COLUMN), figure<COLUMN>, COMPARE_NUMBER)),
     ...);
  }

  std::vector<Figures>& m_figures;
};

std::vector<Figures> makeFigures() {
  std::vector<Figures> rows(ROWS);
  double figure = 0.37;
  for (Figures& row : rows)
    for (int column = 0; column < COLUMNS; ++column)
      row.push_back(figure += 1.01 * (column + 1));
  return rows;
}

template <class Work>
double secondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double formatBare(const std::vector<Figures>& rows) {
  std::size_t units = 0;
  const double seconds = secondsOf([&] {
    for (const Figures& row : rows)
      for (const double figure : row)
        units += String::fromDouble(figure, 2).size();
  });
  return units > 0 ? seconds : 0.0; // Uses the sum, so that the compiler doesn't remove the work.
}

double refreshOne(Table& table) {
  return secondsOf([&] {
           for (int time = 0; time < REFRESHES; ++time)
             table.refreshRow(*table.rowAt((time * 37) % ROWS));
         }) /
         REFRESHES;
}

void showIn(FXApp& app, FXMainWindow& window) {
  app.create();
  window.show(PLACEMENT_SCREEN);
  app.runWhileEvents();
}

bool measure(FXApp& app) {
  std::vector<Figures> figures = makeFigures();
  FXMainWindow window(&app, "Figures", nullptr, nullptr, DECOR_ALL, 0, 0, 1000, 600);
  auto& table = *new FigureTable(&window, figures);
  if (app.getDisplay())
    showIn(app, window);
  const auto rebuild = [&] { return secondsOf([&] { table.updateTable(); }); };
  const double rebuildRatio = Bench::measureRatio(ROUNDS, rebuild, [&] { return formatBare(figures); });
  const double refreshRatio = Bench::measureRatio(
      ROUNDS, [&] { return refreshOne(table); }, rebuild);
  const bool rebuilds = Bench::printRatio("table_rebuild", rebuildRatio, REBUILD_LIMIT);
  const bool refreshes = Bench::printRatio("table_row_refresh", refreshRatio, REFRESH_LIMIT);
  return rebuilds && refreshes;
}

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  FXApp app("Tallymoor", "Brindlecove");
  app.init(argc, argv, std::getenv("DISPLAY") != nullptr);
  return Tallymoor::measure(app) ? 0 : 1;
}
