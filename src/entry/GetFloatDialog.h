#pragma once
#include "foundation/Date.h"
#include "widgets/Dialog.h"

namespace Tallymoor {

class GetFloatPanel;

/// Asks for an amount of cash on a day; the caller books it from panel() when execute() gives 1.
class GetFloatDialog : public Dialog {
  FXDECLARE(GetFloatDialog)
public:
  /// An empty heading shows the title.
  GetFloatDialog(FXWindow* owner, const String& title, const String& heading = String());

  bool validate() override;
  GetFloatPanel* panel() const { return m_panel; }

  /// As the base's, with failures reported under this class's name.
  long onOK(FXObject*, FXSelector, void*);

protected:
  GetFloatDialog() {}

private:
  GetFloatPanel* m_panel = nullptr;
};

} // namespace Tallymoor
