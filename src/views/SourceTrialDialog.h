#pragma once
#include "views/SourceTrial.h"
#include "widgets/Dialog.h"
#include <optional>
#include <vector>

namespace Tallymoor {

class FormNotes;
class FormTextField;

/// Tries a source with a code: shows what it answered and what was read, or why it failed. It begins at once
/// if the source's document names a code that it surely has.
class SourceTrialDialog : public Dialog {
  FXDECLARE(SourceTrialDialog)
public:
  enum { ID_TRY = Dialog::ID_LAST, ID_LAST };

  SourceTrialDialog(FXWindow* owner, const PriceStatus::OfSource& source);

  void create() override;
  /// True if the source has given prices.
  bool hasSucceeded() const { return m_hasSucceeded; }

  long onTry(FXObject*, FXSelector, void*);

protected:
  SourceTrialDialog() {}

private:
  void build(const String& code);
  void begin();
  void show(const PriceStatus::Trial& trial);
  void showText(const String& text);
  bool answerDoubts(const std::vector<FormatDoubt>& doubts);

  String m_source;
  String m_tried;
  FormTextField* m_code = nullptr;
  FXButton* m_try = nullptr;
  FormNotes* m_result = nullptr;
  bool m_hasSucceeded = false;
  std::optional<SourceTrial> m_trial;
};

} // namespace Tallymoor
