#pragma once
#include "desktop/SystemTray.h"
#include <fx.h>
#include <map>
#include <memory>

namespace Tallymoor {

class PriceWatch;
class TallymoorWindow;

/// The window's side of the system tray: where the window goes when it is minimised and how it comes back,
/// the tip, and the balloons, whose warnings stay in the window's strip. GUI thread, under the big mutex,
/// except where an operation says otherwise.
class TrayController : public FXObject, public SystemTray::Watcher {
  FXDECLARE_ABSTRACT(TrayController)
public:
  /// Timers.
  enum { ID_HIDE_AFTER_BALLOON = 1, ID_TRAY_GONE, ID_TRAY_MENU };

  /// The icon keeps its pixels; it and the window outlive the controller.
  TrayController(TallymoorWindow& window, const FXIcon& icon);
  ~TrayController() override;

  SystemTray& tray() const { return *m_tray; }

  /// The tip shows the day's result and follows the prices, once there is something that they change.
  void followPrices();
  void stopFollowing();
  void updateTip();

  /// Hides the window where a tray takes it.
  void minimise();
  /// Out of the tray, and above other windows.
  void bringToFront();

  /// See MainWindow. Any thread.
  void warnOnce(const String& text, const String& caption, const String& key, int level);
  void warningOver(const String& key);
  /// As warnOnce, and every time.
  void warn(const String& text, const String& caption, const String& key, int level);

  void onLeftClick() override {}
  void onRightClick() override;
  void onDoubleClick() override;
  void onMouseMove() override {}
  void onCommand(unsigned identifier) override;
  std::vector<SystemTray::MenuEntry> menuEntries() const override;
  void onPlaceChanged() override;
  void onBalloonNotShown(const String& text, const String& title, int level) override;

  long onHideAfterBalloon(FXObject*, FXSelector, void*);
  long onTrayGone(FXObject*, FXSelector, void*);
  long onTrayMenu(FXObject*, FXSelector, void*);

private:
  /// The key of what a balloon told, and whether its cause has gone.
  struct ToldByBalloon {
    String key;
    bool over = false;
  };

  long restoreWindow();
  void hideBehindIcon();
  void bringIntoSight();
  void showMenu(FXint x, FXint y);

  TallymoorWindow& m_window;
  FXApp* m_app;
  std::map<String, ToldByBalloon> m_toldByBalloon; ///< by the text
  std::unique_ptr<SystemTray> m_tray;
  std::unique_ptr<PriceWatch> m_prices;
};

} // namespace Tallymoor
