#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

/// The version, the libraries in use and where the prices come from.
class AboutDialog : public Dialog {
  FXDECLARE(AboutDialog)
public:
  AboutDialog(FXWindow* owner, FXIcon* icon);

protected:
  AboutDialog() {}

private:
  void buildVersion(FXComposite* parent, FXIcon* icon);
  void buildNotices(FXComposite* parent);
};

} // namespace Tallymoor
