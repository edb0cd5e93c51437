#pragma once
#include <fx.h>

namespace Tallymoor {

class TallymoorWindow;

/// The end of the start: brings the portfolios up to date while the window is in use already, one record
/// after the other in the order of the tree, then looks at the limits of the stocks. It works while no event
/// waits, in pieces of a fraction of a second, and stands still while a dialog or popup is open, since it may
/// ask about splits and show boxes.
///
/// GUI thread.
class IdleLoading : public FXObject {
  FXDECLARE_ABSTRACT(IdleLoading)
public:
  enum { ID_IDLE = 1, ID_LATER };

  explicit IdleLoading(TallymoorWindow& window);
  ~IdleLoading() override;
  IdleLoading(const IdleLoading&) = delete;
  IdleLoading& operator=(const IdleLoading&) = delete;

  /// When the nodes have been made.
  void begin();
  /// For good, before the nodes go.
  void stop();
  bool isUnderWay() const { return m_underWay; }

  long onIdle(FXObject*, FXSelector, void*);

private:
  bool doNextPiece();
  void work();

  TallymoorWindow& m_window;
  FXApp* m_app;
  bool m_underWay = false;
};

} // namespace Tallymoor
