#pragma once
#include "foundation/Date.h"
#include "widgets/GUIPanel.h"
#include <memory>

namespace Tallymoor {

class DateField;
class FormIcons;
class FormRows;

/// A form for something that happened on a day. The day can be typed, or picked from a calendar by the small
/// button beside the field.
class DatedPanel : public GUIPanel {
  FXDECLARE(DatedPanel)
public:
  enum { ID_CHOOSE_DATE = GUIPanel::ID_LAST, ID_DATE, ID_LAST };

  DatedPanel(FXComposite* parent, const String& title, const String& description);
  ~DatedPanel() override;

  /// Throws Exception when the text is no date.
  Date date() const;
  void setDate(const Date& date);
  /// The day in the local form; where the text is no date, the text.
  String shownDate() const;
  /// The day has to be entered again: its field gets the focus.
  void focusDate();

  /// A failure is reported under the name of the form's own class.
  long onChooseDate(FXObject*, FXSelector, void*);
  /// Another day was chosen, or may have been typed.
  long onDate(FXObject*, FXSelector, void*);

protected:
  /// What follows the date.
  virtual void dateChanged() {}

  DatedPanel();
  const FormIcons& icons() const { return *m_icons; }
  /// Adds the row of the date; once for a form.
  void addDate(FormRows& rows, const String& label);
  DateField* dateField() const { return m_date; }
  /// Refuses a text that is no date, and a day after today with the message.
  bool checkDate(const String& futureMessage) const;

private:
  std::unique_ptr<FormIcons> m_icons;
  DateField* m_date = nullptr;
};

} // namespace Tallymoor
