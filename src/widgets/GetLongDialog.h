#pragma once
#include "widgets/Dialog.h"
#include <cstdint>

namespace Tallymoor {

class NumberSpinner;

/// Asks for a whole number between a minimum and a maximum.
class GetLongDialog : public Dialog {
  FXDECLARE(GetLongDialog)
public:
  GetLongDialog(FXWindow* owner, const String& title, const String& heading, std::int32_t minimum,
                std::int32_t maximum, std::int32_t initial);

  std::int32_t value() const { return m_value; }
  /// A number outside the limits is brought to the nearer one.
  bool validate() override;

protected:
  GetLongDialog() {}
  /// The row of the number, for what stands beside it.
  FXHorizontalFrame* row() const { return m_row; }

private:
  FXHorizontalFrame* m_row = nullptr;
  NumberSpinner* m_spinner = nullptr;
  std::int32_t m_value = 0;
};

} // namespace Tallymoor
