#include "workbench/TextOnPage.h"
#include "pages/HTMLTag.h"
#include "workbench/PageText.h"
#include "workbench/TagLists.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// True if the last opening mark before the position is not closed.
bool isWithin(const String& page, std::size_t place, const String& opening, const String& closing) {
  const std::size_t opened = page.rfind(opening, place);
  if (opened == String::npos)
    return false;
  const std::size_t closed = page.rfind(closing, place);
  return closed == String::npos || closed < opened;
}

String whyNotAt(const String& page, std::size_t place) {
  if (isWithin(page, place, u"<script", u"</script"))
    return u"in a script. The program runs no scripts, so it does not see what they add. Look for another "
           u"page of the source that contains the value itself.";
  if (isWithin(page, place, u"<!--", u"-->"))
    return u"in a comment, which the program ignores.";
  if (isWithin(page, place, u"<", u">"))
    return u"inside a tag, in an attribute. A walk can only read a tag's text.";
  return u"as text that the program assigns to no tag. A tag's text is the text just before its closing tag; "
         u"text before an opening tag or outside of <html> is ignored. Look for a place where the value is "
         u"alone in a closed tag.";
}

} // namespace

TextOnPage::TextOnPage(const HTMLTag& start, const String& text) {
  const String wanted = asShown(text);
  tagsBelow(start, [&](const HTMLTag& tag) {
    if (tag.textView().size() < wanted.size())
      return false;
    const String shown = asShown(tag.textView());
    if (shown == wanted)
      whole.push_back(&tag);
    else if (shown.contains(wanted))
      part.push_back(&tag);
    return false;
  });
  std::sort(whole.begin(), whole.end());
  std::sort(part.begin(), part.end());
}

String TextOnPage::whyNotInTags(const String& page, const String& text) {
  const String lowerPage = page.toLower(); // Has the same length, so positions stay valid.
  const std::size_t place = lowerPage.find(text.toLower());
  if (place == String::npos)
    return u"The page does not contain this text. The program reads the page as the server sends it; a "
           u"browser also shows and saves what scripts add later. Fetch the page with check --code CODE "
           u"--save FILE and look at that file.";
  const auto line = static_cast<std::size_t>(
      std::count(page.begin(), page.begin() + static_cast<std::ptrdiff_t>(place), u'\n') + 1);
  return u"It is on line " + numberText(line) + u" of the page, but " + whyNotAt(lowerPage, place);
}

} // namespace Tallymoor
