#pragma once
#include <fx.h>

namespace Tallymoor {

class ViewDateController;

/// Shows the view date, and asks for another one when it is clicked or Enter or the space bar is pressed in
/// it. Tinted while the day is not today.
class DateTextField : public FXTextField {
  FXDECLARE_ABSTRACT(DateTextField)
public:
  /// Window and controller outlive the field.
  DateTextField(FXComposite* parent, FXWindow& window, ViewDateController& viewDate, FXSelector selector);

  void showToday();
  /// A day in the past.
  void showPast();

  /// The button goes down: nothing happens until it comes up.
  long onPress(FXObject*, FXSelector, void*);
  long onChangeCurrentDate(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);

private:
  FXWindow& m_window;
  ViewDateController& m_viewDate;
};

} // namespace Tallymoor
