#pragma once
#include "foundation/String.h"
#include <functional>
#include <fx.h>

namespace Tallymoor {

/// A form that a dialog or a wizard page can carry. It knows its fields and how to check them.
class GUIPanel : public FXVerticalFrame {
  FXDECLARE(GUIPanel)
public:
  GUIPanel(FXComposite* parent, const String& title, const String& description);

  /// Tells the user what is wrong and returns false to stay in the form.
  virtual bool validate();

  const String& title() const { return m_title; }
  const String& description() const { return m_description; }
  /// A wizard may show one form at several places of its route, under other texts.
  void setTexts(const String& title, const String& description);

  /// The body of validate(), also of a dialog that holds its fields itself: an Exception in the checks shows
  /// "There was a problem validating your input" and counts as false.
  static bool runChecks(const std::function<bool()>& checks);

protected:
  GUIPanel() {}

private:
  String m_title;
  String m_description;
};

} // namespace Tallymoor
