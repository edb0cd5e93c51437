#pragma once
#include "analysis/ReportPeriod.h"
#include "widgets/Dialog.h"
#include <memory>

namespace Tallymoor {

class DateField;
class FormIcons;

/// Asks for the first and the last day of a report. Both can be typed, or picked from a calendar.
class ReportPeriodDialog : public Dialog {
  FXDECLARE(ReportPeriodDialog)
public:
  enum { ID_CHOOSE_FIRST = Dialog::ID_LAST, ID_CHOOSE_LAST, ID_LAST };

  ReportPeriodDialog(FXWindow* owner, const ReportPeriod& initial);
  ~ReportPeriodDialog() override;

  /// Refuses a period that ends after today, or before it begins.
  bool validate() override;
  /// Throws Exception when a text is no date; not after OK.
  ReportPeriod period() const;

  long onOK(FXObject*, FXSelector, void*);
  long onChooseFirst(FXObject*, FXSelector, void*);
  long onChooseLast(FXObject*, FXSelector, void*);

protected:
  ReportPeriodDialog();

private:
  bool checkOrder() const;

  std::unique_ptr<FormIcons> m_icons;
  DateField* m_first = nullptr;
  DateField* m_last = nullptr;
};

} // namespace Tallymoor
