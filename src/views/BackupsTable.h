#pragma once
#include "session/Backups.h"
#include "views/ChoiceTable.h"
#include <list>

namespace Tallymoor {

/// The dated copies of the records, a row each, the newest first.
class BackupsTable : public ChoiceTable {
  FXDECLARE_ABSTRACT(BackupsTable)
public:
  explicit BackupsTable(FXComposite* parent);

  /// That of the chosen row, else of the first one; null without rows.
  const Backup* chosen() const;

protected:
  void fillTable() override;

private:
  std::list<Backup> m_backups;
};

} // namespace Tallymoor
