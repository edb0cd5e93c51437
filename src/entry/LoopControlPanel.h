#pragma once
#include "widgets/GUIPanel.h"

namespace Tallymoor {

/// Stands between the entries of one kind: the user says whether the section is finished or another entry
/// follows.
class LoopControlPanel : public GUIPanel {
  FXDECLARE(LoopControlPanel)
public:
  explicit LoopControlPanel(FXComposite* parent);

  /// Another section: its title, what it is about, the question of the check button and how to answer it.
  void showSection(const String& title, const String& text, const String& question, const String& help);
  bool isFinished() const;
  void setFinished(bool finished);

protected:
  LoopControlPanel() {}

private:
  FXLabel* m_text = nullptr;
  FXCheckButton* m_finished = nullptr;
  FXLabel* m_help = nullptr;
};

} // namespace Tallymoor
