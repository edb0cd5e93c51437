#pragma once
#include "market/CodeSearchResult.h"
#include "widgets/Dialog.h"
#include <vector>

namespace Tallymoor {

class StockSearchTable;

/// Asks the data source for stocks or indexes that match a text, and lets the user choose one of the answers.
class StockSearchDialog : public Dialog {
  FXDECLARE(StockSearchDialog)
public:
  /// Searches at once, with a wait cursor. Throws HTTPException when offline or when the fetch failed; no
  /// dialog is shown then. The caller gives up the big mutex around execute().
  StockSearchDialog(FXWindow* owner, const String& text, bool isShare, bool usOnly);
  ~StockSearchDialog() override;

  /// Of the chosen row; empty when nothing was found. The name is followed by " in " and the market.
  const String& code() const { return m_code; }
  const String& name() const { return m_name; }

  bool validate() override;

  /// Null when nothing was found.
  StockSearchTable* table() const { return m_table; }

protected:
  StockSearchDialog() {}

private:
  void buildTable(const String& text);

  std::vector<CodeSearchResult> m_results; ///< the table's rows point into it
  StockSearchTable* m_table = nullptr;
  String m_code;
  String m_name;
};

} // namespace Tallymoor
