#pragma once
#include "entry/FormIcons.h"
#include "widgets/Dialog.h"
#include <functional>
#include <memory>

namespace Tallymoor {

class FormTextField;

/// Changes the name of a portfolio and the index that its performance is compared with; the caller stores
/// name() and indexCode() when execute() gives 1.
class PortfolioPropertiesDialog : public Dialog {
  FXDECLARE(PortfolioPropertiesDialog)
public:
  enum { ID_SEARCH_CODE = FXDialogBox::ID_LAST, ID_CODE, ID_LAST };

  /// Tells the user what is wrong with a changed name and gives false to stay in the form.
  using NameCheck = std::function<bool(const String& name)>;

  /// The fields start with the portfolio's name and the code of its index, empty for none. The icons and the
  /// check are used for as long as the dialog is there.
  PortfolioPropertiesDialog(FXWindow* owner, const String& name, const String& indexCode,
                            NameCheck nameCheck);
  ~PortfolioPropertiesDialog() override;

  bool validate() override;

  /// Both as they may go into the records; an empty code is for no index.
  String name() const;
  String indexCode() const;

  long onSearchCode(FXObject*, FXSelector, void*);
  /// The name of another index goes with its code.
  long onCodeTyped(FXObject*, FXSelector, void*);

protected:
  PortfolioPropertiesDialog() {}

private:
  void buildFields();
  bool checkName();
  void chooseIndex();
  void searchIndex();

  std::unique_ptr<FormIcons> m_icons;
  String m_oldName;
  NameCheck m_nameCheck;
  FormTextField* m_name = nullptr;
  FormTextField* m_indexCode = nullptr;
  FormTextField* m_indexName = nullptr;
};

} // namespace Tallymoor
