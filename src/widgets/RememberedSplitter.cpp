#include "widgets/RememberedSplitter.h"
#include "foundation/Settings.h"
#include "widgets/HandlerScope.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(RememberedSplitter)
RememberedSplitterMap[] = {
    FXMAPFUNC(SEL_COMMAND, RememberedSplitter::ID_SPLITTER, RememberedSplitter::onMoved),
};

FXIMPLEMENT(RememberedSplitter, FXSplitter, RememberedSplitterMap, ARRAYNUMBER(RememberedSplitterMap))

namespace {

const String SECTION = u"Gui Settings";
constexpr FXint WHOLE = 1000; ///< shares are in thousandths of the height
/// Neither pane is ever so small that its bar can't be found again.
constexpr FXint SMALLEST_SHARE = 100;

} // namespace

RememberedSplitter::RememberedSplitter(FXComposite* parent, const String& key, FXint usualShare)
    : FXSplitter(parent, nullptr, ID_SPLITTER,
                 SPLITTER_VERTICAL | SPLITTER_TRACKING | LAYOUT_FILL_X | LAYOUT_FILL_Y),
      m_key(key), m_usualShare(usualShare) {
  setTarget(this);
}

FXint RememberedSplitter::keptShare() const {
  const std::int32_t kept = Settings::Instance().readInt(SECTION, m_key, m_usualShare);
  return std::clamp(kept, SMALLEST_SHARE, WHOLE - SMALLEST_SHARE);
}

/// By resize alone does the toolkit bring a pane onto the display that had no height before: setHeight, and
/// with it setSplit, only writes the number down, and nothing notices later that the pane was never mapped.
void RememberedSplitter::layout() {
  const FXint share = keptShare();
  FXWindow* const pane = getFirst();
  if (pane && getHeight() > 0 && (getHeight() != m_laidOutHeight || share != m_laidOutShare)) {
    m_laidOutHeight = getHeight();
    m_laidOutShare = share;
    pane->resize(pane->getWidth(), getHeight() * share / WHOLE);
  }
  FXSplitter::layout();
}

long RememberedSplitter::onMoved(FXObject*, FXSelector, void*) {
  return guardedHandler(u"RememberedSplitter::onMoved failed.", [this] {
    if (getHeight() > 0)
      Settings::Instance().writeInt(SECTION, m_key, getSplit(0) * WHOLE / getHeight());
    m_laidOutShare = keptShare();
  });
}

} // namespace Tallymoor
