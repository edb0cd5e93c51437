#pragma once
#include "shell/DateTextField.h"

namespace Tallymoor {

class CommandTable;
class ViewDateController;

/// The row that moves the view date: forward a week and a day, the field with the date, back a day and a
/// week. The buttons that go forward are dead while the date is today.
class ViewDateRow : public FXHorizontalFrame {
  FXDECLARE_ABSTRACT(ViewDateRow)
public:
  /// The commands go to the window. The table outlives the row.
  ViewDateRow(FXComposite* parent, FXWindow& window, ViewDateController& viewDate,
              const CommandTable& commands);

  /// Both after Date's view date has changed.
  void showToday();
  void showPast();

  DateTextField* field() const { return m_field; }
  FXButton* forwardWeek() const { return m_forwardWeek; }
  FXButton* forwardDay() const { return m_forwardDay; }

private:
  FXButton* addButton();
  void setUp(FXButton& button, FXuint id);

  FXWindow& m_window;
  const CommandTable& m_commands;
  FXButton* m_forwardWeek = nullptr;
  FXButton* m_forwardDay = nullptr;
  DateTextField* m_field = nullptr;
};

} // namespace Tallymoor
