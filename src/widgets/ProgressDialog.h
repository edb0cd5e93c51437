#pragma once
#include "foundation/LengthyFunctions.h"
#include <fx.h>

namespace Tallymoor {

/// Shows the progress of lengthy work on the GUI thread: a banner, a heading, a log of what was done, and a
/// bar. Each step lets events pass. Made on the stack; goes away when it dies.
class ProgressDialog : public FXProgressDialog, public Progress {
  FXDECLARE(ProgressDialog)
public:
  /// What supplies the work; the class that the rest of the program knows.
  using HasLengthyFunctions = Tallymoor::HasLengthyFunctions;

  enum Style {
    SMALL_BAR = 0,   ///< a small bar of fixed size
    PERCENT_BAR = 1, ///< a bar as wide as the dialog, with the percentage in it
    CAN_CANCEL = 2   ///< with a "Cancel" button; may be added to either
  };

  /// The banner, if any, is the caller's and must outlive the dialog.
  ProgressDialog(FXWindow* owner, const String& caption, const String& heading, unsigned steps,
                 unsigned style = PERCENT_BAR, FXIcon* banner = nullptr);
  ~ProgressDialog() override;

  /// Shows the dialog, calls the work with this as its last argument, and tells whether the dialog is still
  /// shown: the user didn't cancel or close it. What the work throws comes through, with the dialog hidden.
  bool run(HasLengthyFunctions& work, int argument);

  void setTotal(unsigned steps) override;
  /// Adds to the bar and, if the text is not empty, a line to the log.
  void step(unsigned increment, const String& text) override;
  /// A line to the log, with the bar where it is.
  void setText(const String& text) override;
  bool isCancelled() const override;
  /// Fills the bar and leaves it in view for a moment.
  void finish();

  unsigned total() const;
  /// What the log shows, a line for each step that had a text.
  String log() const;
  const FXButton& cancelButton() const { return *cancel; }

  long onCmdCancel(FXObject*, FXSelector, void*);

protected:
  ProgressDialog() {}

private:
  void buildHeading(FXComposite* parent, const String& heading);
  void buildLog(FXComposite* parent);
  void buildBar(FXComposite* parent, unsigned style);
  void buildCancel(FXComposite* parent, unsigned style);
  void letEventsPass();

  FXText* m_log = nullptr;
};

} // namespace Tallymoor
