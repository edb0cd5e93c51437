#pragma once
#include "foundation/UserInteraction.h"
#include "widgets/GetLongDialog.h"

namespace Tallymoor {

/// Asks for a ratio of two whole numbers, from 1 to a maximum.
class GetRatioDialog : public GetLongDialog {
  FXDECLARE(GetRatioDialog)
public:
  /// The remark stands behind the numbers and says what they are.
  GetRatioDialog(FXWindow* owner, const String& title, const String& heading, const String& remark,
                 std::int32_t maximum, const WholeRatio& initial);

  WholeRatio ratio() const { return {value(), m_secondValue}; }
  /// Numbers outside the limits are brought to the nearer one.
  bool validate() override;

protected:
  GetRatioDialog() {}

private:
  NumberSpinner* m_second = nullptr;
  std::int32_t m_secondValue = 1;
};

} // namespace Tallymoor
