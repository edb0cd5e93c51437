#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class BackupsTable;
struct Backup;

/// The dated copies of the records, with what is in them. OK, after a question, when the chosen one is to be
/// put back, which is the caller's work.
class BackupsDialog : public Dialog {
  FXDECLARE(BackupsDialog)
public:
  explicit BackupsDialog(FXWindow* owner);

  BackupsTable* table() const { return m_table; }
  /// Null without one that can be put back.
  const Backup* chosen() const;
  bool validate() override;

protected:
  BackupsDialog() {}

private:
  void showChoice();

  BackupsTable* m_table = nullptr;
};

} // namespace Tallymoor
