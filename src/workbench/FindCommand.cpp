#include "workbench/FindCommand.h"
#include "pages/HTMLTag.h"
#include "pages/PageFigure.h"
#include "workbench/LocatorWay.h"
#include "workbench/LocatorXml.h"
#include "workbench/NumberRemark.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/TextOnPage.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr std::size_t MOST_TAGS = 10;

const char16_t* title(LocatorWay::By by) {
  switch (by) {
  case LocatorWay::By::Label:
    return u"From the label before it; works until the label changes:";
  case LocatorWay::By::Attribute:
    return u"From the nearest tag with an identifying attribute:";
  case LocatorWay::By::Position:
    break;
  }
  return u"By position; works until something is inserted before it:";
}

bool looksLikeAmount(const String& text) {
  return beginsWithNumber(text) && text.find_first_not_of(u"0123456789.,") == String::npos;
}

} // namespace

bool FindCommand::run() {
  if (asShown(m_text).empty())
    throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND, u"the text to look for is empty");
  const WebPage page = WebPage::fromFile(m_page);
  page.show(m_out);
  TextOnPage found(*page.root(), m_text);
  std::vector<const HTMLTag*> tags = found.whole;
  tags.insert(tags.end(), found.part.begin(), found.part.end());
  if (tags.empty()) {
    m_out.line(u"No tag contains the text " + inQuotes(m_text) + u".");
    m_out.line(TextOnPage::whyNotInTags(page.text(), m_text));
    return false;
  }
  m_out.line(counted(found.whole.size(), u"tag has", u"tags have") + u" the text " + inQuotes(m_text) +
             (found.part.empty()
                  ? String(u".")
                  : u"; " + counted(found.part.size(), u"tag has", u"tags have") + u" it among other text."));
  bool reached = false;
  for (std::size_t i = 0; i < std::min(tags.size(), MOST_TAGS); ++i)
    reached = showTag(page, *tags[i], i + 1) || reached;
  if (tags.size() > MOST_TAGS)
    m_out.line(u"\n" + numberText(tags.size() - MOST_TAGS) +
               u" more are not shown. A longer text finds fewer.");
  if (reached)
    m_out.line(
        u"\nUse one that fits the pages of all stocks, without a label or attribute that names this stock.");
  return reached;
}

bool FindCommand::showTag(const WebPage& page, const HTMLTag& tag, std::size_t number) {
  m_out.line();
  m_out.line(numberText(number) + u". " + tagSummary(tag));
  m_out.line(u"at " + placeOf(tag), 1);
  if (looksLikeAmount(m_text)) {
    const String remark = remarkOnNumber(tag.text());
    m_out.line(remark.empty() ? u"as a number it reads as " + String::fromDouble(requireFigure(tag.text()), 4)
                              : u"Note: " + remark + u".",
               1);
  }
  const std::vector<LocatorWay> ways = LocatorWay::to(tag, *page.root());
  for (const LocatorWay& way : ways) {
    m_out.line(title(way.by), 1);
    XMLTagLocator locator = way.locator;
    locator.setFormat(VALUE_FORMAT_FLOAT);
    writeTagLocator(m_out, locator, 2);
  }
  if (ways.empty())
    m_out.line(
        u"No walk leads there from <html>: the page's tags are closed in an irregular order, or nested too "
        u"deeply.",
        1);
  return !ways.empty();
}

} // namespace Tallymoor
