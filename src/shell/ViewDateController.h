#pragma once
#include "foundation/Date.h"
#include "shell/CommandTable.h"

namespace Tallymoor {

class TallymoorWindow;
class ViewDateRow;
class WindowIcons;

/// The view date, the day at which the window shows all capital: today, unless the user has moved it. Its
/// state is that of Date. GUI thread, under the big mutex.
class ViewDateController {
public:
  explicit ViewDateController(TallymoorWindow& window) : m_window(window) {}

  /// Those that move it, which can be used once the condition holds.
  std::vector<Command> commands(const WindowIcons& icons, const std::function<bool()>& isLoaded);
  void buildRow(FXComposite* parent, const CommandTable& commands);
  ViewDateRow* row() const { return m_row; }

  static bool isMoved() { return Date::hasFixedDate(); }
  /// Shows everything as of this day, which lies before today. No prices are fetched until today is shown
  /// again. Throws Exception.
  void set(const Date& date);
  /// Back to today.
  void reset();
  /// Counts from the day shown; today is as far as it goes.
  void move(int days);

private:
  void show();

  TallymoorWindow& m_window;
  ViewDateRow* m_row = nullptr;
};

} // namespace Tallymoor
