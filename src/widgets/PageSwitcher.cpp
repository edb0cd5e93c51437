#include "widgets/PageSwitcher.h"

namespace Tallymoor {

FXIMPLEMENT(PageSwitcher, FXSwitcher, nullptr, 0)

PageSwitcher::PageSwitcher(FXComposite* parent, FXuint options) : FXSwitcher(parent, options) {}

void PageSwitcher::create() {
  // Not the switcher's own, which makes the windows of every page.
  FXWindow::create(); // NOLINT(bugprone-parent-virtual-call)
  if (FXWindow* page = shownPage())
    page->create();
}

void PageSwitcher::showPage(FXWindow* page) {
  for (FXWindow* other = getFirst(); other; other = other->getNext())
    if (other != page)
      other->destroy();
  if (id() != 0 && page->id() == 0)
    page->create();
  setCurrent(indexOfChild(page), FALSE);
}

FXWindow* PageSwitcher::shownPage() const {
  return numChildren() > 0 ? childAtIndex(getCurrent()) : nullptr;
}

} // namespace Tallymoor
