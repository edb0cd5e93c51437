#pragma once
#include "foundation/String.h"
#include <deque>
#include <fx.h>
#include <map>
#include <memory>

namespace Tallymoor {

class GUIPanel;

/// A dialog of several pages: a banner with the title and the description of the page, the page, and the
/// buttons "Cancel", "< Back" and "Next >", the last of which turns into "Finish" on a final page. The pages
/// are ordinary forms, made in pages() and registered.
///
/// The route by itself goes from each page to the one numbered one above it. A subclass decides otherwise by
/// overriding the handlers of the buttons. Made on the stack, run by execute() (1 for Finish, 0 for anything
/// else). Escape and the close box are Cancel. Needs a MainWindow.
class Wizard : public FXDialogBox {
  FXDECLARE(Wizard)
public:
  enum { ID_NEXT = FXDialogBox::ID_LAST, ID_BACK, ID_FINISH, ID_LAST };

  Wizard(FXWindow* owner, const String& title);
  ~Wizard() override;

  /// While a background pass runs it opens nothing and gives 0.
  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;
  void create() override;

  /// Where the pages are made. They belong to the wizard.
  FXSwitcher* pages() const { return m_pages; }
  /// What is made here stands beside every page.
  FXHorizontalFrame* besidePages() const { return m_middle; }
  void registerPage(GUIPanel* panel, int number);
  /// Shows a page, and remembers it as the one that "< Back" comes to from the next. Throws Exception
  /// "Wizard::setToPage - page not registered: " with the panel's title.
  void setToPage(GUIPanel* panel);
  /// Null before the first page.
  GUIPanel* currentPage() const;
  /// From now until "< Back" the last button is "Finish".
  void setFinalPage();

  FXButton* cancelButton() const { return m_cancel; }
  FXButton* backButton() const { return m_back; }
  FXButton* nextButton() const { return m_next; }

  virtual long onCancel(FXObject*, FXSelector, void*);
  /// Stays on a page whose validate() says so.
  virtual long onNext(FXObject*, FXSelector, void*);
  virtual long onBack(FXObject*, FXSelector, void*);
  virtual long onFinish(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  Wizard();
  /// The keyboard goes to the current page, to what takes it there first.
  void focusFirstField();

private:
  struct Shown {
    int number;
    GUIPanel* panel;
  };

  void buildBanner(FXComposite* parent);
  void buildButtons(FXComposite* parent);
  FXButton* addButton(FXComposite* parent, const char* text, FXuint command, FXuint options);
  void goOn();
  GUIPanel* pageNumbered(int number) const;
  void showLastOfHistory();

  std::unique_ptr<FXFont> m_titleFont;
  std::unique_ptr<FXFont> m_descriptionFont;
  std::unique_ptr<FXIcon> m_picture;
  FXLabel* m_title = nullptr;
  FXLabel* m_description = nullptr;
  FXHorizontalFrame* m_middle = nullptr;
  FXSwitcher* m_pages = nullptr;
  FXButton* m_cancel = nullptr;
  FXButton* m_back = nullptr;
  FXButton* m_next = nullptr;
  std::map<GUIPanel*, int> m_numbers;
  std::deque<Shown> m_history;
};

} // namespace Tallymoor
