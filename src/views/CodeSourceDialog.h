#pragma once
#include "widgets/Dialog.h"
#include <vector>

namespace Tallymoor {

class FormTextField;

/// Where the prices of one stock come from: from the sources in their order, or from one of them alone, which
/// may know the stock by another code. OK stores the choice and has prices fetched.
class CodeSourceDialog : public Dialog {
  FXDECLARE(CodeSourceDialog)
public:
  enum { ID_SOURCE = Dialog::ID_LAST, ID_LAST };

  CodeSourceDialog(FXWindow* owner, const String& code);

  /// Throws Exception if the choice can't be written.
  bool validate() override;

  long onSource(FXObject*, FXSelector, void*);

protected:
  CodeSourceDialog() {}

private:
  void fillSources();
  void sourceChosen();

  String m_code;
  std::vector<String> m_sources; ///< names in the order of the list, behind its first entry
  FXListBox* m_list = nullptr;
  FormTextField* m_codeThere = nullptr;
};

} // namespace Tallymoor
