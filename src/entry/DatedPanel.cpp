#include "entry/DatedPanel.h"
#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "widgets/CalendarDialog.h"
#include "widgets/DateField.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

FXDEFMAP(DatedPanel)
DatedPanelMap[] = {
    FXMAPFUNC(SEL_COMMAND, DatedPanel::ID_CHOOSE_DATE, DatedPanel::onChooseDate),
    FXMAPFUNC(SEL_COMMAND, DatedPanel::ID_DATE, DatedPanel::onDate),
};

FXIMPLEMENT(DatedPanel, GUIPanel, DatedPanelMap, ARRAYNUMBER(DatedPanelMap))

DatedPanel::DatedPanel() = default;

DatedPanel::DatedPanel(FXComposite* parent, const String& title, const String& description)
    : GUIPanel(parent, title, description), m_icons(std::make_unique<FormIcons>(getApp())) {}

DatedPanel::~DatedPanel() = default;

void DatedPanel::addDate(FormRows& rows, const String& label) {
  m_date = addDateRow(rows, label, *m_icons, this, ID_CHOOSE_DATE, ID_DATE);
  setDate(Date());
}

Date DatedPanel::date() const {
  return dateIn(*m_date);
}

void DatedPanel::setDate(const Date& date) {
  m_date->setDate(date);
}

String DatedPanel::shownDate() const {
  const auto day = m_date->date();
  return day ? day->toString(DATE_DISPLAY_LOCAL) : m_date->text();
}

void DatedPanel::focusDate() {
  putFocus(*m_date);
}

bool DatedPanel::checkDate(const String& futureMessage) const {
  return requireNotInFuture(*m_date, futureMessage);
}

long DatedPanel::onChooseDate(FXObject*, FXSelector, void*) {
  return guardedHandler(String(getClassName()) + u"::onChooseDate failed.",
                        [this] { chooseDate(this, *m_date); });
}

long DatedPanel::onDate(FXObject*, FXSelector, void*) {
  return guardedHandler(String(getClassName()) + u"::onDate failed.", [this] {
    if (m_date->date())
      dateChanged();
  });
}

} // namespace Tallymoor
