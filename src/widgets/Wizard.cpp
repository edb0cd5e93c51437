#include "widgets/Wizard.h"
#include "assets/Icons.h"
#include "foundation/Exception.h"
#include "widgets/GUIPanel.h"
#include "widgets/HandlerScope.h"
#include "widgets/ModalDialogs.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(Wizard)
WizardMap[] = {
    FXMAPFUNC(SEL_COMMAND, Wizard::ID_CANCEL, Wizard::onCancel),
    FXMAPFUNC(SEL_CLOSE, 0, Wizard::onCancel), // the toolkit's own goes past overriding classes
    FXMAPFUNC(SEL_COMMAND, Wizard::ID_NEXT, Wizard::onNext),
    FXMAPFUNC(SEL_COMMAND, Wizard::ID_BACK, Wizard::onBack),
    FXMAPFUNC(SEL_COMMAND, Wizard::ID_FINISH, Wizard::onFinish),
    FXMAPFUNC(SEL_KEYPRESS, 0, Wizard::onKeyPress),
};

FXIMPLEMENT(Wizard, FXDialogBox, WizardMap, ARRAYNUMBER(WizardMap))

namespace {

constexpr FXint BANNER_HEIGHT = 96;
/// Digits of the title's font that find room: the window is made before the texts of later pages are known.
constexpr FXint BANNER_COLUMNS = 42;
constexpr FXuint TITLE_SIZE = 12;
constexpr FXuint DESCRIPTION_SIZE = 9;

FXLabel* addBannerText(FXComposite* parent, FXFont* font) {
  auto* label = new FXLabel(parent, FXString(), nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0);
  label->setBackColor(parent->getBackColor());
  label->setTextColor(FXRGB(0, 0, 0));
  label->setFont(font);
  return label;
}

/// The first widget that takes the focus, in tab order; null when there is none.
FXWindow* firstField(FXWindow& in) {
  for (FXWindow* child = in.getFirst(); child; child = child->getNext()) {
    if (!child->shown())
      continue;
    if (child->canFocus() && child->isEnabled())
      return child;
    if (FXWindow* found = firstField(*child))
      return found;
  }
  return nullptr;
}

} // namespace

Wizard::Wizard() = default;

Wizard::Wizard(FXWindow* owner, const String& title)
    : FXDialogBox(owner, toFox(title), DECOR_TITLE | DECOR_BORDER | DECOR_CLOSE, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                  0),
      m_titleFont(programFont(*getApp(), TITLE_SIZE, FXFont::Bold)),
      m_descriptionFont(programFont(*getApp(), DESCRIPTION_SIZE, FXFont::Normal)),
      m_picture(std::make_unique<FXGIFIcon>(getApp(), icons::wizard_gif, 0, IMAGE_OPAQUE)) {
  auto* column = new FXVerticalFrame(this, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  buildBanner(column);
  new FXHorizontalSeparator(column, SEPARATOR_GROOVE | LAYOUT_FILL_X);
  m_middle = new FXHorizontalFrame(column, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 20, 20, 10, 10, 10, 0);
  m_pages = new FXSwitcher(m_middle, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0);
  new FXHorizontalSeparator(column, SEPARATOR_GROOVE | LAYOUT_FILL_X);
  buildButtons(column);
  getAccelTable()->addAccel(parseAccel("Esc"), this, FXSEL(SEL_COMMAND, ID_CANCEL));
}

Wizard::~Wizard() = default;

void Wizard::buildBanner(FXComposite* parent) {
  const FXColor white = FXRGB(255, 255, 255);
  auto* banner = new FXHorizontalFrame(parent, LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0,
                                       scaledToText(BANNER_HEIGHT), 20, 10, 4, 4);
  banner->setBackColor(white);
  const FXint textWidth = BANNER_COLUMNS * m_titleFont->getTextWidth("0");
  auto* texts =
      new FXVerticalFrame(banner, LAYOUT_FIX_WIDTH | LAYOUT_CENTER_Y, 0, 0, textWidth, 0, 0, 0, 0, 0, 0, 4);
  texts->setBackColor(white);
  m_title = addBannerText(texts, m_titleFont.get());
  m_description = addBannerText(texts, m_descriptionFont.get());
  auto* picture = new FXLabel(banner, FXString(), m_picture.get(), LAYOUT_RIGHT | LAYOUT_CENTER_Y);
  picture->setBackColor(white);
}

void Wizard::buildButtons(FXComposite* parent) {
  auto* row = new FXHorizontalFrame(parent, LAYOUT_FILL_X, 0, 0, 0, 0, 20, 20, 10, 10);
  m_cancel = addButton(row, "Cancel", ID_CANCEL, LAYOUT_LEFT);
  auto* route = new FXHorizontalFrame(row, LAYOUT_RIGHT, 0, 0, 0, 0, 0, 0, 0, 0);
  m_back = addButton(route, "< Back", ID_BACK, 0);
  m_next = addButton(route, "Next >", ID_NEXT, BUTTON_INITIAL);
  m_back->disable();
}

FXButton* Wizard::addButton(FXComposite* parent, const char* text, FXuint command, FXuint options) {
  constexpr FXuint USUAL = FRAME_RAISED | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | BUTTON_DEFAULT;
  return new FXButton(parent, text, nullptr, this, command, USUAL | options, 0, 0, scaledToText(95),
                      scaledToText(31));
}

void Wizard::create() {
  FXDialogBox::create();
  focusFirstField();
}

FXuint Wizard::execute(FXuint placement) {
  return runModal(*this, placement, [this](FXuint where) { return FXDialogBox::execute(where); });
}

// ---- Pages ----

void Wizard::registerPage(GUIPanel* panel, int number) {
  m_numbers[panel] = number;
}

void Wizard::setToPage(GUIPanel* panel) {
  const auto found = m_numbers.find(panel);
  if (found == m_numbers.end())
    throw Exception(u"Wizard::setToPage - page not registered: " + panel->title());
  m_history.push_back({found->second, panel});
  showLastOfHistory();
}

GUIPanel* Wizard::currentPage() const {
  return m_history.empty() ? nullptr : m_history.back().panel;
}

GUIPanel* Wizard::pageNumbered(int number) const {
  const auto found = std::find_if(m_numbers.begin(), m_numbers.end(),
                                  [number](const auto& page) { return page.second == number; });
  return found == m_numbers.end() ? nullptr : found->first;
}

void Wizard::showLastOfHistory() {
  GUIPanel* page = currentPage();
  m_pages->setCurrent(m_pages->indexOfChild(page));
  m_title->setText(labelText(page->title()));
  m_description->setText(labelText(page->description()));
  if (page->description().empty())
    m_description->hide();
  else
    m_description->show();
  layout(); // the toolkit shows the page only then, and the focus goes nowhere else
  focusFirstField();
}

void Wizard::setFinalPage() {
  m_next->setText("Finish");
  m_next->setSelector(ID_FINISH);
}

// A text field must not be given the focus before it has a window: the toolkit aborts.
void Wizard::focusFirstField() {
  if (!id() || !currentPage())
    return;
  FXWindow* field = firstField(*currentPage());
  (field ? field : m_next)->setFocus();
  if (auto* text = dynamic_cast<FXTextField*>(field))
    text->selectAll(); // typing replaces what stands there
}

// ---- Buttons ----

long Wizard::onCancel(FXObject* sender, FXSelector selector, void* data) {
  return guardedHandler(u"Wizard::onCancel failed.",
                        [&] { FXDialogBox::onCmdCancel(sender, selector, data); });
}

long Wizard::onFinish(FXObject* sender, FXSelector selector, void* data) {
  return guardedHandler(u"Wizard::onFinish failed.",
                        [&] { FXDialogBox::onCmdAccept(sender, selector, data); });
}

long Wizard::onNext(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Wizard::onNext failed.", [this] {
    if (currentPage() && currentPage()->validate())
      goOn();
  });
}

void Wizard::goOn() {
  m_back->enable();
  if (GUIPanel* next = pageNumbered(m_history.back().number + 1))
    setToPage(next);
  else
    setFinalPage();
}

long Wizard::onBack(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Wizard::onBack failed.", [this] {
    if (m_history.size() > 1)
      m_history.pop_back();
    if (m_history.size() <= 1)
      m_back->disable();
    m_next->setText("Next >");
    m_next->setSelector(ID_NEXT);
    if (currentPage())
      showLastOfHistory();
  });
}

long Wizard::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  return keyInDialog(*this, *static_cast<FXEvent*>(data), m_next->getSelector(),
                     [&] { return FXDialogBox::onKeyPress(sender, selector, data); });
}

} // namespace Tallymoor
