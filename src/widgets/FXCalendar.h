#pragma once
#include "foundation/Date.h"
#include <array>
#include <fx.h>

namespace Tallymoor {

/// A month's calendar: arrows for year and month around the month's name, the days of the week from Monday,
/// and a button for each day. Days of the neighbouring months are shown greyed; pressing one goes there.
/// Always one day is marked. Sends SEL_COMMAND to its target when the user marks a day, with the Date as
/// data.
class FXCalendar : public FXVerticalFrame {
  FXDECLARE(FXCalendar)
public:
  enum {
    ID_PREVIOUS_YEAR = FXVerticalFrame::ID_LAST,
    ID_PREVIOUS_MONTH,
    ID_NEXT_MONTH,
    ID_NEXT_YEAR,
    ID_DAY,
    ID_LAST_DAY = ID_DAY + 41,
    ID_LAST
  };

  FXCalendar(FXComposite* parent, const Date& date, FXObject* target = nullptr, FXSelector selector = 0);

  /// Years outside 1 to 9999 are brought to the nearer end.
  void setDate(const Date& date);
  Date date() const { return m_date; }
  void getDate(int& year, int& month, int& day) const;

  long onMove(FXObject*, FXSelector, void*);
  long onDay(FXObject*, FXSelector, void*);
  /// Arrow keys walk the days, Page Up and Page Down the months, with Shift or Control the years.
  long onKeyPress(FXObject*, FXSelector, void*);
  bool canFocus() const override;

protected:
  FXCalendar() {}

private:
  void buildHeading();
  void buildDays();
  void showMonth();
  void chooseByUser(const Date& date);

  Date m_date;
  FXLabel* m_title = nullptr;
  std::array<FXButton*, 42> m_days{};
};

} // namespace Tallymoor
