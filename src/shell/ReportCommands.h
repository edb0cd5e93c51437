#pragma once
#include "analysis/ReportPeriod.h"
#include "shell/CommandTable.h"

namespace Tallymoor {

class TallymoorWindow;

/// The commands that make reports of all portfolios.
class ReportCommands {
public:
  explicit ReportCommands(TallymoorWindow& window) : m_window(window) {}

  /// The condition says when there is something to report on.
  std::vector<Command> commands(FXIcon* icon, const std::function<bool()>& isUsable);

private:
  void makeReport(const ReportPeriod& period, const String& title);
  void makeCustomReport();

  TallymoorWindow& m_window;
};

} // namespace Tallymoor
