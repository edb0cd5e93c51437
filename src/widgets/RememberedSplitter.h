#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

/// Two panes, one above the other, with a bar between them that the user moves. The upper pane's share of
/// the height is kept in the settings, and is the same in all splitters of its key. GUI thread only, under
/// the big mutex.
class RememberedSplitter : public FXSplitter {
  FXDECLARE(RememberedSplitter)
public:
  enum { ID_SPLITTER = FXSplitter::ID_LAST, ID_LAST };

  /// In thousandths of the height.
  static constexpr FXint MIDDLE = 500;

  /// The key is that in section "Gui Settings". The panes are the first two children; the usual share is the
  /// upper one's until the user moves the bar.
  RememberedSplitter(FXComposite* parent, const String& key, FXint usualShare = MIDDLE);

  void layout() override;

  long onMoved(FXObject*, FXSelector, void*);

protected:
  RememberedSplitter() {}

private:
  FXint keptShare() const;

  String m_key;
  FXint m_usualShare = MIDDLE;
  FXint m_laidOutHeight = -1;
  FXint m_laidOutShare = -1;
};

} // namespace Tallymoor
