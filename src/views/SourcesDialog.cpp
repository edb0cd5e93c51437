#include "views/SourcesDialog.h"
#include "foundation/BigMutex.h"
#include "market/TallymoorInternet.h"
#include "views/SourceActions.h"
#include "views/SourcesTable.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/MessageLayout.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(SourcesDialog)
SourcesDialogMap[] = {
    FXMAPFUNCS(SEL_COMMAND, SourcesDialog::ID_SWITCH_ON, SourcesDialog::ID_READ_AGAIN,
               SourcesDialog::onAction),
};

FXIMPLEMENT(SourcesDialog, Dialog, SourcesDialogMap, ARRAYNUMBER(SourcesDialogMap))

namespace {

constexpr FXint WIDTH = 860;
constexpr FXint HEIGHT = 230;
constexpr std::size_t DETAIL_LINES = 4;

PriceStatus& status() {
  return TallymoorInternet::Instance().priceStatus();
}

/// That of the table, which scrolls where the screen is narrow.
FXint widthOnScreen(const FXWindow& dialog) {
  return std::min(scaledToText(WIDTH), dialog.getRoot()->getWidth() * 9 / 10);
}

String summaryText(const std::vector<PriceStatus::OfSource>& sources) {
  String names;
  for (const PriceStatus::OfSource& source : sources)
    if (source.listed.isOn)
      names += (names.empty() ? String() : String(u", then ")) + shownName(source);
  if (names.empty())
    return u"No source is on: no prices are fetched.";
  return u"Prices come from: " + names + u".";
}

void addLine(String& text, const String& line) {
  if (!line.empty())
    text += (text.empty() ? String() : String(u"\n")) + line;
}

String wordsOfCommand(const std::vector<String>& words) {
  String text;
  for (const String& word : words)
    text += (text.empty() ? String() : String(u" ")) + word;
  return text;
}

/// What the table has no room for.
String detailText(const PriceStatus::OfSource& source) {
  String text = source.isSample ? String(u"For trying the program out: companies and prices are made up.")
                                : source.listed.folder + wordsOfCommand(source.listed.command);
  if (const auto& document = source.listed.document) {
    addLine(text, (document->terms() + u" " + document->termsLink()).trimmed());
    addLine(text, (document->keyHint() + u" " + document->keyLink()).trimmed());
  }
  if (const auto& failure = source.told.lastFailure)
    addLine(text, (failure->code.empty() ? String() : failure->code + u": ") + failure->reason.text);
  return text;
}

bool isOwn(const ListedSource& source) {
  return source.kind == SourceKind::Folder || source.kind == SourceKind::Command;
}

} // namespace

SourcesDialog::SourcesDialog(FXWindow* owner)
    : Dialog(owner, u"Sources of prices",
             u"For each stock the first source that is on and has it gives the price.") {
  m_summary = new FXLabel(contents(), "", nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  auto* frame =
      new FXHorizontalFrame(contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0,
                            0, widthOnScreen(*this), scaledToText(HEIGHT), 0, 0, 0, 0);
  m_table = new SourcesTable(frame);
  m_details = new FXLabel(contents(), "", nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  addActions();
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  m_prices.emplace(getApp(), u"SourcesDialog::showAll failed.",
                   [this](const std::set<String>&) { showAll(); });
  showAll();
}

SourcesDialog::~SourcesDialog() {
  m_prices.reset();
}

FXuint SourcesDialog::execute(FXuint placement) {
  const BigMutexRelease release;
  return Dialog::execute(placement);
}

void SourcesDialog::addButton(FXComposite* row, const char* text, FXSelector id) {
  m_buttons[id] = new FXButton(row, text, nullptr, this, id, BUTTON_NORMAL);
}

void SourcesDialog::addActions() {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  addButton(row, "Switch &on\t\tAsks this source for prices, in its place in the order", ID_SWITCH_ON);
  addButton(row, "Switch o&ff\t\tDoes not ask this source any more", ID_SWITCH_OFF);
  addButton(row, "Move &up\t\tAsks this source before the one above it", ID_MOVE_UP);
  addButton(row, "Move &down\t\tAsks this source after the one below it", ID_MOVE_DOWN);
  addButton(row, "&Try it...\t\tShows what this source gives", ID_TRY);
  addButton(row, "&Key...\t\tYour key for this service", ID_KEY);
  row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  addButton(row, "Add a fo&lder...\t\tPrices from CSV files, one for each stock", ID_ADD_FOLDER);
  addButton(row, "Add a co&mmand...\t\tPrices from a program of yours", ID_ADD_COMMAND);
  addButton(row, "&Remove...\t\tTakes this folder or command out of the list; its files stay", ID_REMOVE);
  addButton(row, "F&iles...\t\tWhich files of this folder can be read, and what they leave open", ID_FILES);
  addButton(row, "Com&plaints...\t\tDocuments that can't be read", ID_COMPLAINTS);
  addButton(row, "Read &again\t\tReads all documents again, after a change", ID_READ_AGAIN);
}

void SourcesDialog::enable(FXSelector id, bool usable) {
  if (usable)
    m_buttons.at(id)->enable();
  else
    m_buttons.at(id)->disable();
}

void SourcesDialog::showAll() {
  m_table->updateTable();
  m_summary->setText(labelText(summaryText(status().ofSources())));
  showChoice();
}

void SourcesDialog::showChoice() {
  const PriceStatus::OfSource* source = m_table->chosen();
  const bool isOn = source && source->listed.isOn;
  enable(ID_SWITCH_ON, source && !isOn);
  enable(ID_SWITCH_OFF, isOn);
  const int place = m_table->chosenKey().toLong(); // the rows may be sorted otherwise
  enable(ID_MOVE_UP, source && place > 1);
  enable(ID_MOVE_DOWN, source && place < m_table->getNumRows());
  enable(ID_TRY, source);
  enable(ID_KEY, source && source->needsKey);
  enable(ID_REMOVE, source && isOwn(source->listed));
  enable(ID_FILES, source && source->listed.kind == SourceKind::Folder);
  enable(ID_COMPLAINTS, !status().complaints().empty());
  showDetails(source ? detailText(*source) : String());
}

/// Always as high, so that the buttons below stay where they are.
void SourcesDialog::showDetails(const String& text) {
  const FXFont& font = *m_details->getFont();
  const auto widthOf = [&font](const String& line) { return font.getTextWidth(toFox(line)); };
  String shown = fittedMessage(text, {widthOf, widthOnScreen(*this), DETAIL_LINES});
  const auto lines = static_cast<std::size_t>(std::ranges::count(shown, u'\n')) + 1;
  for (std::size_t missing = lines; missing < DETAIL_LINES; ++missing)
    shown += u"\n";
  m_details->setText(labelText(shown));
}

long SourcesDialog::onAction(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"SourcesDialog::onAction failed.", [this, selector] {
    try {
      act(FXSELID(selector));
    } catch (const Exception&) {
      showAll(); // a part of it may have been done
      throw;
    }
    showAll();
  });
}

void SourcesDialog::act(FXSelector action) {
  switch (action) {
  case ID_ADD_FOLDER:
    return showNew(addSourceFolder(this));
  case ID_ADD_COMMAND:
    return showNew(addSourceCommand(this));
  case ID_COMPLAINTS:
    return showComplaints();
  case ID_READ_AGAIN:
    status().sources().readAgain();
    return fetchAfresh();
  default:
    if (const PriceStatus::OfSource* source = m_table->chosen())
      actOn(action, String(source->listed.name)); // the row goes with the next change
  }
}

void SourcesDialog::actOn(FXSelector action, const String& name) {
  switch (action) {
  case ID_SWITCH_ON:
    switchSourceOn(this, name);
    break;
  case ID_SWITCH_OFF:
    switchSourceOff(name);
    break;
  case ID_MOVE_UP:
    move(name, -1);
    break;
  case ID_MOVE_DOWN:
    move(name, 1);
    break;
  case ID_TRY:
    trySource(this, name);
    break;
  case ID_KEY:
    enterSourceKey(this, name);
    break;
  case ID_FILES:
    askAboutFiles(name);
    break;
  default:
    remove(name);
  }
}

void SourcesDialog::showNew(const String& name) {
  m_table->updateTable();
  m_table->chooseSource(name);
}

void SourcesDialog::move(const String& name, int step) {
  const auto& sources = status().sources().sources();
  const auto place = std::ranges::find(sources, name, &ListedSource::name) - sources.begin();
  status().sources().move(name, static_cast<std::size_t>(place + step));
}

void SourcesDialog::remove(const String& name) {
  if (!MainWindow::question(u"Do you want to take " + name +
                            u" out of the list?\nIts files stay as they are."))
    return;
  status().sources().remove(name);
  fetchAfresh();
}

void SourcesDialog::showComplaints() {
  String text;
  for (const SourceComplaint& complaint : status().complaints())
    addLine(text, complaint.file + u"\n    " + complaint.cause);
  MainWindow::warning(text);
}

} // namespace Tallymoor
