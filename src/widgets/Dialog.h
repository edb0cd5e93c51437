#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// Frame of every modal dialog: a white band with the description, the contents, and the buttons "Cancel" and
/// "OK". Made on the stack, run by execute() (1 for OK, 0 for anything else), read afterwards. Needs a
/// MainWindow. While a background pass runs, execute() opens nothing and gives 0.
class Dialog : public FXDialogBox {
  FXDECLARE(Dialog)
public:
  /// An empty description shows the title in the band.
  Dialog(FXWindow* owner, const String& title, const String& description);

  /// Called by OK. Tells the user what is wrong and returns false to stay in the dialog.
  virtual bool validate();
  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;
  void create() override;
  /// The widget that has the focus whenever the dialog opens; the OK button unless told otherwise. A text
  /// field must not be given the focus earlier by itself: the toolkit aborts when it has no window yet.
  void setFirstFocus(FXWindow* widget) { m_firstFocus = widget; }

  long onOK(FXObject*, FXSelector, void*);
  /// Enter that no widget wants is OK, whatever has the focus.
  long onKeyPress(FXObject*, FXSelector, void*);

  /// Where a subclass puts its widgets.
  FXVerticalFrame* contents() const { return m_contents; }
  FXHorizontalFrame* buttons() const { return m_buttons; }
  FXButton* cancelButton() const { return m_cancel; }
  FXButton* okButton() const { return m_ok; }

protected:
  Dialog() {}
  /// The body of an OK handler: accepts when validate() says so, and shows a failure under the context.
  long acceptIfValid(const String& context, FXObject* sender, FXSelector selector, void* data);

private:
  void buildHeading(FXComposite* parent, const String& description);
  void buildButtons(FXComposite* parent);

  FXVerticalFrame* m_contents = nullptr;
  FXHorizontalFrame* m_buttons = nullptr;
  FXButton* m_cancel = nullptr;
  FXButton* m_ok = nullptr;
  FXWindow* m_firstFocus = nullptr;
};

} // namespace Tallymoor
