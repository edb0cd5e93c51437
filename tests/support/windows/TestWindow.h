#pragma once
#include "widgets/MainWindow.h"
#include <functional>
#include <set>
#include <vector>

namespace Tallymoor {

/// A minimal main window that records the calls it gets.
class TestWindow : public MainWindow {
public:
  explicit TestWindow(FXApp* app) : MainWindow(app, nullptr, nullptr) {}

  struct Warning {
    String text, caption, key;
    int level;
  };

  void saveAll() override { ++saves; }
  void shutdown() override {
    ++shutdowns;
    if (onShutdownRuns)
      onShutdownRuns();
  }
  void minimiseToTray() override { ++minimises; }
  void updateStatus() override { ++statusUpdates; }
  void warnOnce(const String& text, const String& caption, const String& key, int level) override {
    warnings.push_back({text, caption, key, level});
  }

  void warningOver(const String& key) override { warningsOver.insert(key); }

  int saves = 0;
  int shutdowns = 0;
  int minimises = 0;
  int statusUpdates = 0;
  std::vector<Warning> warnings;
  std::set<String> warningsOver; ///< By key.
  std::function<void()> onShutdownRuns;
};

} // namespace Tallymoor
