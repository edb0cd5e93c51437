#include "views/HistoryDialog.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "session/ChangeDetails.h"
#include "views/ChangeTable.h"
#include "views/HistoryTable.h"
#include "widgets/FormTextField.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/TabWalk.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>
#include <iterator>
#include <set>
#include <utility>

namespace Tallymoor {

FXDEFMAP(HistoryDialog)
HistoryDialogMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, HistoryDialog::onKeyPress),
    FXMAPFUNC(SEL_CHANGED, HistoryDialog::ID_FILTER, HistoryDialog::onFilter),
    FXMAPFUNC(SEL_COMMAND, HistoryDialog::ID_FILTER, HistoryDialog::onFilter),
    FXMAPFUNC(SEL_COMMAND, HistoryDialog::ID_GO_BACK, HistoryDialog::onGoBack),
};

FXIMPLEMENT(HistoryDialog, Dialog, HistoryDialogMap, ARRAYNUMBER(HistoryDialogMap))

namespace {

constexpr FXint WIDTH = 760;
constexpr FXint LIST_HEIGHT = 230;
constexpr FXint DETAILS_HEIGHT = 190;
constexpr FXint LIST_PERCENT = 30; ///< of the screen's height, at most
constexpr FXint DETAILS_PERCENT = 22;
constexpr FXint MOST_IN_VIEW = 12;
constexpr FXint TEXT_COLUMNS = 20;
constexpr std::size_t MOST_ENTRIES = 500; ///< of which the details are listed

String countText(std::size_t count, const String& what) {
  return String::fromLong(static_cast<std::int64_t>(count)) + u" " + what + (count == 1 ? u"" : u"s");
}

} // namespace

HistoryDialog::HistoryDialog(FXWindow* owner, ChangeHistory history)
    : Dialog(owner, u"History", u"What you have changed in your portfolios."), m_history(std::move(history)) {
  addFilter();
  addTables();
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  m_goBack =
      new FXButton(row, "&Go Back to Here...\t\tBrings your portfolios to their state after this change",
                   nullptr, this, ID_GO_BACK, BUTTON_NORMAL);
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  showChoice();
  if (!m_table->chosen())
    m_details->show({});
}

void HistoryDialog::addFilter() {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  new FXLabel(row, "Find", nullptr, LAYOUT_CENTER_Y);
  m_text = new FormTextField(row, TEXT_COLUMNS, this, ID_FILTER, TEXTFIELD_NORMAL | LAYOUT_CENTER_Y);
  new FXLabel(row, "in", nullptr, LAYOUT_CENTER_Y);
  m_portfolios = new FXListBox(row, this, ID_FILTER,
                               LISTBOX_NORMAL | FRAME_SUNKEN | FRAME_THICK | LAYOUT_CENTER_Y | LAYOUT_FILL_X);
  std::set<String> names;
  for (const ChangeHistory::Entry& change : m_history->changes())
    names.insert(change.portfolios.begin(), change.portfolios.end());
  m_names.assign(1, String());
  m_names.insert(m_names.end(), names.begin(), names.end());
  m_portfolios->appendItem("all portfolios");
  for (const String& name : names)
    m_portfolios->appendItem(toFox(name));
  m_portfolios->setNumVisible(std::min(m_portfolios->getNumItems(), MOST_IN_VIEW));
}

void HistoryDialog::addTables() {
  const FXWindow& screen = *getRoot();
  const FXint width = std::min(scaledToText(WIDTH), screen.getWidth() * 9 / 10);
  const auto frame = [&](FXint height, FXint percent) {
    return new FXHorizontalFrame(
        contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0, 0, width,
        std::min(scaledToText(height), screen.getHeight() * percent / 100), 0, 0, 0, 0);
  };
  m_table = new HistoryTable(frame(LIST_HEIGHT, LIST_PERCENT), m_history->changes());
  m_caption = new FXLabel(contents(), "What it did", nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  m_details = new ChangeTable(frame(DETAILS_HEIGHT, DETAILS_PERCENT));
}

std::vector<ChangeDetail> HistoryDialog::detailsOfChosen() {
  std::vector<ChangeDetail> details;
  const HistoryTable::Line* const line = m_table->chosen();
  if (!line || !line->change)
    return details;
  const auto differences = m_history->differencesOf(*line->change);
  for (const ChangeHistory::Difference& difference : differences)
    for (ChangeDetail& detail : detailsOf(difference, MOST_ENTRIES)) {
      if (differences.size() > 1)
        detail.entry = difference.portfolio + u": " + detail.entry;
      details.push_back(std::move(detail));
    }
  return details;
}

/// The newest change has nothing to take back behind it.
void HistoryDialog::showChoice() {
  const HistoryTable::Line* const line = m_table->chosen();
  if (line && m_history->countSince(line->number()) > 0)
    m_goBack->enable();
  else
    m_goBack->disable();
  const std::optional<std::uint64_t> number = line ? std::optional(line->number()) : std::nullopt;
  if (m_shown == number)
    return;
  m_shown = number;
  try {
    const WaitCursor wait;
    withUnforeseenFailures([this] { m_details->show(detailsOfChosen()); });
  } catch (const Exception& exception) {
    m_details->show({{exception.message(), {}, {}, {}}});
  }
}

long HistoryDialog::onFilter(FXObject*, FXSelector, void*) {
  return guardedHandler(u"HistoryDialog::onFilter failed.", [this] {
    m_table->filter(m_text->text().trimmed(),
                    m_names.at(static_cast<std::size_t>(m_portfolios->getCurrentItem())));
  });
}

long HistoryDialog::onGoBack(FXObject*, FXSelector, void*) {
  return guardedHandler(u"HistoryDialog::onGoBack failed.", [this] {
    const HistoryTable::Line* const line = m_table->chosen();
    const std::size_t count = line ? m_history->countSince(line->number()) : 0;
    if (count == 0)
      return;
    const std::uint64_t number = line->number();
    if (!MainWindow::question(u"Do you want to take back " + countText(count, u"change") +
                              u" of all portfolios?\nYou can undo that as one change."))
      return;
    m_wantedBack = number;
    handle(this, FXSEL(SEL_COMMAND, ID_ACCEPT), nullptr);
  });
}

/// Enter in the field goes to what was found, and Escape closes wherever the focus is.
long HistoryDialog::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  if ((code == KEY_Return || code == KEY_KP_Enter) && widgetWithKeyboard(*this) == m_text) {
    m_table->setFocus();
    return 1;
  }
  if (code == KEY_Escape) // which a table would keep
    return handle(this, FXSEL(SEL_COMMAND, ID_CANCEL), nullptr);
  return Dialog::onKeyPress(sender, selector, data);
}

} // namespace Tallymoor
