#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

class FormNotes;
class XMLSharePortfolio;

/// A list, for reading, of what the start-up wizard has recorded so far.
class RecordedEntries : public FXGroupBox {
  FXDECLARE(RecordedEntries)
public:
  explicit RecordedEntries(FXComposite* parent);

  /// Lists what stands in a portfolio's records now; null while there is none.
  void show(const XMLSharePortfolio* portfolio);

protected:
  RecordedEntries() {}

private:
  FormNotes* m_list = nullptr;
};

/// True when anything at all has been entered into a portfolio.
bool hasEntries(const XMLSharePortfolio& portfolio);

} // namespace Tallymoor
