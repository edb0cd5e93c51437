#pragma once
#include "widgets/Dialog.h"
#include <array>

namespace Tallymoor {

/// The question of the first start: where prices come from. The choice is carried out by OK, so that it works
/// when the dialog has closed; to close it otherwise is to choose later.
class PriceOriginDialog : public Dialog {
  FXDECLARE(PriceOriginDialog)
public:
  enum { ID_CHOICE = Dialog::ID_LAST, ID_LAST_CHOICE = ID_CHOICE + 3, ID_LAST };

  explicit PriceOriginDialog(FXWindow* owner);

  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;
  /// False if a source was to be added and the user left that without one.
  bool validate() override;

  long onChoose(FXObject*, FXSelector selector, void*);

protected:
  PriceOriginDialog() {}

private:
  enum Choice { SAMPLE, FOLDER, SERVICE, LATER };

  bool useService();

  std::array<FXRadioButton*, 4> m_choices{};
  Choice m_choice = LATER;
};

} // namespace Tallymoor
