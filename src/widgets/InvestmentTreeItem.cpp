#include "widgets/InvestmentTreeItem.h"
#include "foundation/Exception.h"
#include "foundation/UserInteraction.h"
#include "widgets/FlagScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "widgets/MeasuredFont.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(InvestmentTreeItem, TreeViewItem, nullptr, 0)

namespace {

constexpr FXint SPACING = 4;

} // namespace

InvestmentTreeItem::InvestmentTreeItem(InvestmentTree* tree, TreeViewItem* parentItem, const String& label,
                                       FXIcon* openIcon, FXIcon* closedIcon)
    : TreeViewItem(tree, parentItem, label, openIcon, closedIcon) {}

InvestmentTreeItem::~InvestmentTreeItem() {
  delete m_page;
  m_page = nullptr;
  investmentTree()->pageGone(this);
}

FXVerticalFrame* InvestmentTreeItem::page() {
  if (m_page && !m_makingPage)
    freshenViews();
  else if (!m_page && !m_failed)
    makePage();
  return m_page;
}

void InvestmentTreeItem::makePage() {
  const FlagScope making(m_makingPage);
  m_page = investmentTree()->createPage();
  buildView([this] {
    buildHeading();
    makeViews();
  });
}

void InvestmentTreeItem::buildHeading() {
  const InvestmentTree& tree = *investmentTree();
  FXFont* font = measuredFont(MainWindow::Instance().boldFont());
  auto* frame = new FXVerticalFrame(m_page, LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0, 0, 0, 0, 0, 0,
                                    SPACING, SPACING);
  frame->setBackColor(tree.backColour());
  m_heading =
      new FXLabel(frame, labelText(label()), nullptr, LABEL_NORMAL | LAYOUT_CENTER_X | LAYOUT_CENTER_Y);
  m_heading->setFont(font);
  m_heading->setTextColor(tree.textColour());
  m_heading->setBackColor(tree.backColour());
  frame->setHeight(2 * font->getTextHeight(toFox(label())));
}

void InvestmentTreeItem::setHeading(const String& text) {
  if (m_page)
    m_heading->setText(labelText(text));
}

void InvestmentTreeItem::buildFailed() {
  delete m_page;
  m_page = nullptr;
  m_failed = true;
  setSound(false);
  viewsGone();
  investmentTree()->pageGone(this);
}

FXint InvestmentTreeItem::onLeftClick(FXint, FXint) {
  if (isSound() && !m_page)
    m_pageIsNew = page() != nullptr;
  if (!checkSound())
    return 0;
  investmentTree()->showPageOf(this);
  update();
  return 1;
}

void InvestmentTreeItem::removeChild(TreeViewItem*) {
  throw Exception(u"InvestmentTreeItem::removeChild");
}

void InvestmentTreeItem::activate() {
  tree()->selectQuietly(this);
  onLeftClick(0, 0);
}

InvestmentTree* InvestmentTreeItem::investmentTree() const {
  return static_cast<InvestmentTree*>(tree());
}

bool InvestmentTreeItem::checkSound() const {
  if (isSound())
    return true;
  UserInteraction::Instance().error(u"This portfolio has suffered an error. Please restart Tallymoor.");
  return false;
}

} // namespace Tallymoor
