#pragma once
#include <fx.h>

namespace Tallymoor {

/// A switcher whose pages have windows on the display's server only while they are shown. The toolkit queues
/// a repaint for each change of a widget that has one, in sight or not, and looks through the whole queue at
/// each: with the pages of some hundred nodes a single transaction would take seconds.
class PageSwitcher : public FXSwitcher {
  FXDECLARE(PageSwitcher)
public:
  PageSwitcher(FXComposite* parent, FXuint options);

  /// Makes the windows of the shown page alone.
  void create() override;
  /// Shows a page in place of the one that is shown, which gives its windows back; it must not hold the
  /// focus.
  void showPage(FXWindow* page);

protected:
  PageSwitcher() = default;

private:
  FXWindow* shownPage() const;
};

} // namespace Tallymoor
