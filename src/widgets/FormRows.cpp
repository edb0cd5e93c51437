#include "widgets/FormRows.h"
#include "widgets/DateField.h"
#include "widgets/FormNotes.h"
#include "widgets/FormTextField.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FormRows::FormRows(FXComposite* parent) : m_parent(parent) {}

FXHorizontalFrame* FormRows::addRow(const String& label) {
  auto* row = new FXHorizontalFrame(m_parent, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  m_rows.push_back(row);
  m_labels.push_back(new FXLabel(row, labelText(label), nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y));
  return row;
}

FormTextField* FormRows::addText(const String& label, FXObject* target, FXSelector selector) {
  return new FormTextField(addRow(label), COLUMNS, target, selector, TEXTFIELD_NORMAL | LAYOUT_CENTER_Y);
}

FormTextField* FormRows::addReadOnly(const String& label) {
  FormTextField* field = addText(label);
  field->makeReadOnly();
  return field;
}

FormTextField* FormRows::addName(const String& label) {
  FormTextField* field = addReadOnly(label);
  field->setLayoutHints(field->getLayoutHints() | LAYOUT_FILL_X);
  return field;
}

NumberField* FormRows::addNumber(const String& label, int decimals, FXObject* target, FXSelector selector) {
  return new NumberField(addRow(label), decimals, COLUMNS, target, selector);
}

FormTextField* FormRows::addTextWithButton(const String& label, FXIcon* icon, const String& tip,
                                           FXObject* target, FXSelector buttonSelector) {
  FormTextField* field = addText(label);
  addButton(icon, tip, target, buttonSelector);
  return field;
}

DateField* FormRows::addDate(const String& label, FXIcon* icon, const String& tip, FXObject* target,
                             FXSelector buttonSelector, FXSelector fieldSelector) {
  auto* field = new DateField(addRow(label), label, COLUMNS, fieldSelector ? target : nullptr, fieldSelector);
  addButton(icon, tip, target, buttonSelector);
  return field;
}

void FormRows::addButton(FXIcon* icon, const String& tip, FXObject* target, FXSelector selector) {
  new FXButton(m_rows.back(), toFox(tip), icon, target, selector,
               FRAME_RAISED | FRAME_THICK | LAYOUT_CENTER_Y | LAYOUT_FILL_Y, 0, 0, 0, 0, 3, 3, 0, 0);
}

FXCheckButton* FormRows::addCheck(const String& label, FXObject* target, FXSelector selector) {
  m_rows.push_back(new FXHorizontalFrame(m_parent, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0));
  auto* check = new FXCheckButton(m_rows.back(), labelText(label), target, selector,
                                  CHECKBUTTON_NORMAL | JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_labels.push_back(check);
  return check;
}

FXText* FormRows::addNotes(const String& title) {
  auto* group =
      new FXGroupBox(m_parent, toFox(title), GROUPBOX_NORMAL | FRAME_GROOVE | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  auto* frame = new FXHorizontalFrame(group, FRAME_SUNKEN | FRAME_THICK | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0,
                                      0, 0, 0, 0, 0, 0);
  auto* text = new FormNotes(frame, TEXT_WORDWRAP | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  text->setVisibleRows(5);
  return text;
}

void FormRows::reserveLabel(const String& text) {
  m_widestLabel = text;
}

FXLabel* FormRows::lastLabel() const {
  return m_labels.back();
}

void FormRows::align() {
  FXint width = 0;
  if (!m_labels.empty() && !m_widestLabel.empty()) {
    FXLabel* label = m_labels.front();
    const FXint text = label->getFont()->getTextWidth(toFox(m_widestLabel));
    width = text + label->getDefaultWidth() - label->getFont()->getTextWidth(label->getText());
  }
  for (FXLabel* label : m_labels)
    width = std::max(width, label->getDefaultWidth());
  for (FXLabel* label : m_labels) {
    label->setLayoutHints(label->getLayoutHints() | LAYOUT_FIX_WIDTH);
    label->setWidth(width);
  }
}

} // namespace Tallymoor
