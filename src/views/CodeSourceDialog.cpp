#include "views/CodeSourceDialog.h"
#include "entry/FormChecks.h"
#include "market/TallymoorInternet.h"
#include "views/SourceActions.h"
#include "views/SourcesTable.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "widgets/HandlerScope.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(CodeSourceDialog)
CodeSourceDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, CodeSourceDialog::ID_SOURCE, CodeSourceDialog::onSource),
};

FXIMPLEMENT(CodeSourceDialog, Dialog, CodeSourceDialogMap, ARRAYNUMBER(CodeSourceDialogMap))

namespace {

constexpr FXint MOST_IN_VIEW = 10;

SourceList& sources() {
  return TallymoorInternet::Instance().priceStatus().sources();
}

} // namespace

CodeSourceDialog::CodeSourceDialog(FXWindow* owner, const String& code)
    : Dialog(owner, u"Source of a stock", u"Where do the prices of " + code + u" come from?"), m_code(code) {
  FormRows rows(contents());
  m_list = new FXListBox(rows.addRow(u"Source"), this, ID_SOURCE,
                         LISTBOX_NORMAL | FRAME_SUNKEN | FRAME_THICK | LAYOUT_CENTER_Y);
  m_codeThere = rows.addText(u"Code there");
  rows.align();
  fillSources();
  setFirstFocus(m_list);
}

/// Those that are on, and the one that the stock is pinned to.
void CodeSourceDialog::fillSources() {
  const auto pin = sources().pins().find(m_code);
  const bool isPinned = pin != sources().pins().end();
  m_list->appendItem("in the order of the sources");
  for (const PriceStatus::OfSource& source : TallymoorInternet::Instance().priceStatus().ofSources()) {
    const bool isChosen = isPinned && source.listed.name == pin->second.source;
    if (!source.listed.isOn && !isChosen)
      continue;
    m_sources.push_back(source.listed.name);
    m_list->appendItem(toFox(shownName(source) + (source.listed.isOn ? u" alone" : u" alone (off)")));
    if (isChosen)
      m_list->setCurrentItem(m_list->getNumItems() - 1);
  }
  m_list->setNumVisible(std::min(m_list->getNumItems(), MOST_IN_VIEW));
  m_codeThere->setText(isPinned ? pin->second.codeThere : m_code);
  sourceChosen();
}

void CodeSourceDialog::sourceChosen() {
  if (m_list->getCurrentItem() > 0)
    m_codeThere->enable();
  else
    m_codeThere->disable();
}

long CodeSourceDialog::onSource(FXObject*, FXSelector, void*) {
  return guardedHandler(u"CodeSourceDialog::onSource failed.", [this] { sourceChosen(); });
}

bool CodeSourceDialog::validate() {
  const FXint chosen = m_list->getCurrentItem();
  const String codeThere = m_codeThere->text().trimmed();
  if (chosen > 0 && codeThere.empty())
    return refuse(*m_codeThere, u"You must enter the code by which the source knows the stock.");
  if (chosen > 0)
    sources().pin(m_code, {m_sources.at(static_cast<std::size_t>(chosen) - 1), codeThere});
  else
    sources().unpin(m_code);
  fetchAfresh();
  return true;
}

} // namespace Tallymoor
