#pragma once
#include "widgets/Dialog.h"
#include <vector>

namespace Tallymoor {

/// Asks for one entry of a list, or for any number of them. At most 100 entries, which show as they stand: an
/// ampersand is written once. Where one is asked for, choosing it again leaves it chosen, and Return on an
/// entry chooses it first and goes on when pressed a second time.
class ListChoiceDialog : public Dialog {
  FXDECLARE(ListChoiceDialog)
public:
  static constexpr std::size_t MOST_ENTRIES = 100;
  enum { ID_ENTRY = FXDialogBox::ID_LAST, ID_LAST_ENTRY = ID_ENTRY + MOST_ENTRIES - 1, ID_LAST };

  /// multiple: any number of entries may be chosen, at least one; otherwise exactly one.
  ListChoiceDialog(FXWindow* owner, const String& title, const String& heading, bool multiple);

  /// data is handed back by chosenData; null is a valid choice. In single mode a later checked entry joins
  /// the first only by taking its place. Throws Exception when 100 entries are there.
  void addListEntry(const String& text, void* data, bool checked = false);

  bool validate() override;
  long onCheck(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);
  /// Scrolls the entry that has the keyboard into view.
  long onFocusEntry(FXObject*, FXSelector, void*);

  const std::vector<void*>& chosenData() const { return m_chosenData; }
  const std::vector<String>& chosenTexts() const { return m_chosenTexts; }
  /// Positions of the chosen entries, in the order of adding.
  const std::vector<std::size_t>& chosenIndexes() const { return m_chosenIndexes; }

protected:
  ListChoiceDialog() {}

private:
  void choose(FXCheckButton* chosen);
  void uncheckAllBut(const FXCheckButton* kept);
  void sizeList();
  void scrollTo(const FXWindow& row);

  bool m_multiple = false;
  bool m_someChecked = false;
  FXScrollWindow* m_scroller = nullptr;
  FXVerticalFrame* m_list = nullptr;
  std::vector<FXCheckButton*> m_buttons;
  std::vector<String> m_texts;
  std::vector<void*> m_data;
  std::vector<void*> m_chosenData;
  std::vector<String> m_chosenTexts;
  std::vector<std::size_t> m_chosenIndexes;
};

} // namespace Tallymoor
