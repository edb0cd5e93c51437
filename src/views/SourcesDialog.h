#pragma once
#include "views/PriceWatch.h"
#include "widgets/Dialog.h"
#include <map>
#include <optional>

namespace Tallymoor {

class SourcesTable;

/// The sources of prices in their order, and what can be done about them. What its buttons do is done at
/// once.
class SourcesDialog : public Dialog {
  FXDECLARE(SourcesDialog)
public:
  enum {
    ID_SWITCH_ON = Dialog::ID_LAST,
    ID_SWITCH_OFF,
    ID_MOVE_UP,
    ID_MOVE_DOWN,
    ID_TRY,
    ID_KEY,
    ID_ADD_FOLDER,
    ID_ADD_COMMAND,
    ID_REMOVE,
    ID_FILES,
    ID_COMPLAINTS,
    ID_READ_AGAIN,
    ID_LAST
  };

  explicit SourcesDialog(FXWindow* owner);
  ~SourcesDialog() override;

  /// Prices go on coming while it is open.
  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;

  SourcesTable* table() const { return m_table; }

  long onAction(FXObject*, FXSelector selector, void*);

protected:
  SourcesDialog() {}

private:
  void addActions();
  void addButton(FXComposite* row, const char* text, FXSelector id);
  void act(FXSelector action);
  void actOn(FXSelector action, const String& name);
  void showNew(const String& name);
  static void move(const String& name, int step);
  static void remove(const String& name);
  static void showComplaints();
  void showAll();
  void showChoice();
  void showDetails(const String& text);
  void enable(FXSelector id, bool usable);

  SourcesTable* m_table = nullptr;
  FXLabel* m_summary = nullptr;
  FXLabel* m_details = nullptr;
  std::map<FXSelector, FXButton*> m_buttons;
  std::optional<PriceWatch> m_prices;
};

} // namespace Tallymoor
