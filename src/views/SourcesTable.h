#pragma once
#include "market/PriceStatus.h"
#include "views/ChoiceTable.h"
#include <list>

namespace Tallymoor {

/// The sources of prices in their order, a row each: what it is, whether it is on, and what it last said.
class SourcesTable : public ChoiceTable {
  FXDECLARE_ABSTRACT(SourcesTable)
public:
  explicit SourcesTable(FXComposite* parent);

  /// The source of the chosen row; null without rows.
  const PriceStatus::OfSource* chosen() const;
  /// Now, or when the table has been filled, which may wait.
  void chooseSource(const String& name);

protected:
  void fillTable() override;

private:
  std::list<PriceStatus::OfSource> m_sources;
  String m_wanted; ///< to be chosen by the next fill; empty for the one that is chosen
};

/// The name of a source for the user.
String shownName(const PriceStatus::OfSource& source);

} // namespace Tallymoor
