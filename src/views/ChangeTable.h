#pragma once
#include "session/ChangeDetails.h"
#include "views/ChoiceTable.h"
#include <list>
#include <vector>

namespace Tallymoor {

/// What a change did, a row for each field of the records that it changed.
class ChangeTable : public ChoiceTable {
  FXDECLARE_ABSTRACT(ChangeTable)
public:
  explicit ChangeTable(FXComposite* parent);

  /// Only the first details are there at once; others wait for running handlers.
  void show(const std::vector<ChangeDetail>& details);

protected:
  void fillTable() override;

private:
  std::list<ChangeDetail> m_details;
};

} // namespace Tallymoor
