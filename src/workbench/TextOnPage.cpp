#include "workbench/TextOnPage.h"
#include "pages/HTMLTag.h"
#include "workbench/PageText.h"
#include "workbench/TagLists.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// True when the mark that opens something stands nearer before the place than the one that closes it.
bool isWithin(const String& page, std::size_t place, const String& opening, const String& closing) {
  const std::size_t opened = page.rfind(opening, place);
  if (opened == String::npos)
    return false;
  const std::size_t closed = page.rfind(closing, place);
  return closed == String::npos || closed < opened;
}

String whyNotAt(const String& page, std::size_t place) {
  if (isWithin(page, place, u"<script", u"</script"))
    return u"in a script. The program runs no scripts, so what they would put on the page does not exist for "
           u"it. Look for another page of the source that shows the value itself.";
  if (isWithin(page, place, u"<!--", u"-->"))
    return u"in a comment, which the program passes over.";
  if (isWithin(page, place, u"<", u">"))
    return u"inside the brackets of a tag, as a part of an attribute. A walk can only take a tag's text.";
  return u"as text that belongs to no tag for the program. A tag's text is what stands just before its "
         u"closing "
         u"tag; text before an opening tag, or outside of <html>, is passed over. Look for a place where the "
         u"value stands alone in a tag that is closed.";
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
  const String lowerPage = page.toLower(); // one unit for one, so places stay
  const std::size_t place = lowerPage.find(text.toLower());
  if (place == String::npos)
    return u"The page does not hold this text at all. The program gets a page as the server sends it; a "
           u"browser "
           u"may show what scripts add later, and save it too. Have the page fetched by check --code CODE "
           u"--save FILE, and look at that file.";
  const auto line = static_cast<std::size_t>(
      std::count(page.begin(), page.begin() + static_cast<std::ptrdiff_t>(place), u'\n') + 1);
  return u"It stands on line " + numberText(line) + u" of the page, but " + whyNotAt(lowerPage, place);
}

} // namespace Tallymoor
