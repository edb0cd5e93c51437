#pragma once
#include <fx.h>
#include <memory>

namespace Tallymoor {

/// A button of the tool bar. While it is disabled its picture is pale: the toolkit's own way would leave some
/// edges of it.
class CommandButton : public FXButton {
  FXDECLARE(CommandButton)
public:
  /// The text is that of a button: label, tip, line of help. The icon must not be on the display yet.
  CommandButton(FXComposite* parent, const FXString& text, FXIcon* icon, FXObject* target,
                FXSelector command);

  void create() override;
  long onPaint(FXObject*, FXSelector, void*);

protected:
  CommandButton() {}

private:
  std::unique_ptr<FXIcon> m_pale;
};

} // namespace Tallymoor
