#pragma once
#include "widgets/Dialog.h"
#include <functional>

namespace Tallymoor {

class FormTextField;

/// Asks for a text.
class GetStringDialog : public Dialog {
  FXDECLARE(GetStringDialog)
public:
  /// Takes what was typed and returns what to keep.
  using Filter = std::function<String(const String&)>;

  /// With a filter, OK replaces the typed text by its result; a text that the filter leaves empty is
  /// refused with "You must enter a value.".
  GetStringDialog(FXWindow* owner, const String& title, const String& heading,
                  const String& initialText = String(), Filter filter = Filter());

  const String& text() const { return m_text; }
  /// Shows a sign for each letter, for what others must not read.
  void hideText();
  bool validate() override;
  long onOK(FXObject*, FXSelector, void*);

protected:
  GetStringDialog() {}
  FormTextField* field() const { return m_field; }
  /// The row of the field, for what stands beside it.
  FXHorizontalFrame* row() const { return m_row; }

private:
  FXHorizontalFrame* m_row = nullptr;
  FormTextField* m_field = nullptr;
  Filter m_filter;
  String m_text;
};

} // namespace Tallymoor
