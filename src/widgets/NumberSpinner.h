#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <fx.h>

namespace Tallymoor {

/// A spinner for a whole number whose field is left as it is typed: it may be empty for a while, and Enter
/// goes on to the window. The toolkit's own would write its limits over what is being typed, and swallow the
/// key.
class NumberSpinner : public FXSpinner {
  FXDECLARE(NumberSpinner)
public:
  /// Limits the wrong way round mean the minimum alone.
  NumberSpinner(FXComposite* parent, FXint columns, std::int32_t minimum, std::int32_t maximum,
                std::int32_t initial, FXObject* target = nullptr, FXSelector selector = 0);

  /// True when there is nothing in the field.
  bool isEmpty() const;
  /// The number in the field, brought to the nearer limit; an empty field has the last one.
  std::int32_t number() const { return getValue(); }
  /// True when a number is typed that lies beyond the limits.
  bool isBeyondLimits() const;
  /// Replaces what was typed, even if it was read as this number.
  void setValue(FXint value, FXbool notify = FALSE) override;
  FXTextField* field() const { return textField; }

  long onTyped(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  NumberSpinner() {}

private:
  String typed() const;
};

} // namespace Tallymoor
