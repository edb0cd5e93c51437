#pragma once
#include <optional>

namespace Tallymoor {

class FormRows;
class NumberField;

/// The row of a form that shows what is in the cash reserve once the form's entry is recorded. Hidden while
/// it is not known what is there without the entry, which is how it begins.
class CashRow {
public:
  /// Adds the row; once.
  void addTo(FormRows& rows);
  /// What is in the cash reserve without the entry.
  void setBefore(std::optional<double> cash);
  /// What the entry brings into the cash; negative for what it takes.
  void showEffect(double effect);

private:
  NumberField* m_field = nullptr;
  std::optional<double> m_before;
  double m_effect = 0.0;
};

} // namespace Tallymoor
