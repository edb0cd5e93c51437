#include "entry/ReportPeriodDialog.h"
#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "widgets/CalendarDialog.h"
#include "widgets/DateField.h"
#include "widgets/FormRows.h"
#include "widgets/GUIPanel.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

FXDEFMAP(ReportPeriodDialog)
ReportPeriodDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_ACCEPT, ReportPeriodDialog::onOK),
    FXMAPFUNC(SEL_COMMAND, ReportPeriodDialog::ID_CHOOSE_FIRST, ReportPeriodDialog::onChooseFirst),
    FXMAPFUNC(SEL_COMMAND, ReportPeriodDialog::ID_CHOOSE_LAST, ReportPeriodDialog::onChooseLast),
};

FXIMPLEMENT(ReportPeriodDialog, Dialog, ReportPeriodDialogMap, ARRAYNUMBER(ReportPeriodDialogMap))

ReportPeriodDialog::ReportPeriodDialog() = default;

ReportPeriodDialog::ReportPeriodDialog(FXWindow* owner, const ReportPeriod& initial)
    : Dialog(owner, u"Custom Report", u"Choose the first and the last day of the report."),
      m_icons(std::make_unique<FormIcons>(getApp())) {
  FormRows rows(contents());
  m_first = addDateRow(rows, u"From", *m_icons, this, ID_CHOOSE_FIRST);
  m_last = addDateRow(rows, u"To", *m_icons, this, ID_CHOOSE_LAST);
  rows.align();
  m_first->setDate(initial.first);
  m_last->setDate(initial.last);
  setFirstFocus(m_first);
}

ReportPeriodDialog::~ReportPeriodDialog() = default;

ReportPeriod ReportPeriodDialog::period() const {
  return {dateIn(*m_first), dateIn(*m_last)};
}

bool ReportPeriodDialog::validate() {
  static const String IN_FUTURE = u"You can't specify a date in the future.";
  return GUIPanel::runChecks([this] {
    return requireNotInFuture(*m_first, IN_FUTURE) && requireNotInFuture(*m_last, IN_FUTURE) && checkOrder();
  });
}

bool ReportPeriodDialog::checkOrder() const {
  const ReportPeriod days = period();
  return days.first <= days.last || refuse(*m_last, u"The report can't end before it begins.");
}

long ReportPeriodDialog::onOK(FXObject* sender, FXSelector selector, void* data) {
  return acceptIfValid(u"ReportPeriodDialog::onOK failed.", sender, selector, data);
}

long ReportPeriodDialog::onChooseFirst(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ReportPeriodDialog::onChooseFirst failed.", [this] { chooseDate(this, *m_first); });
}

long ReportPeriodDialog::onChooseLast(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ReportPeriodDialog::onChooseLast failed.", [this] { chooseDate(this, *m_last); });
}

} // namespace Tallymoor
