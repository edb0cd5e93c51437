#include "widgets/ToolkitText.h"
#include "widgets/MeasuredFont.h"
#include "widgets/MessageLayout.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// Pixels of a message box beside its text: picture, margins, and a little of the screen around it.
constexpr FXint BESIDE = 160;
/// Pixels above and below it: title, buttons, margins, and bars of the desktop.
constexpr FXint ABOVE = 200;
constexpr FXint SMALLEST_WIDTH = 640;

/// Control characters other than the line end would show as boxes, or end the text early.
String withoutControls(const String& text) {
  String shown;
  for (char16_t unit : text) {
    if (unit == u'\t')
      shown += u' ';
    else if (unit == u'\n' || (unit >= 0x20 && unit != 0x7F))
      shown += unit;
  }
  return shown;
}

String doubled(const String& text, char16_t mark) {
  String result;
  for (char16_t unit : text) {
    result += unit;
    if (unit == mark)
      result += unit;
  }
  return result;
}

/// A pair of percent signs is the formatter's own way of writing one and stays; a lone one becomes a pair.
String safePercents(const String& text) {
  String result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] != u'%')
      continue;
    result += u'%';
    if (i + 1 < text.size() && text[i + 1] == u'%')
      ++i;
  }
  return result;
}

/// What a message box can show on this screen. Before the display is opened the screen has no size.
MessageRoom boxRoom() {
  FXApp* app = FXApp::instance();
  const FXFont* font = measuredFont(app->getNormalFont());
  const FXRootWindow* screen = app->getRootWindow();
  const FXint lines = (screen->getHeight() - ABOVE) / std::max(1, font->getFontHeight());
  return {[font](const String& line) { return font->getTextWidth(toFox(line)); },
          std::max(SMALLEST_WIDTH, screen->getWidth()) - BESIDE,
          static_cast<std::size_t>(std::max(0, lines))};
}

} // namespace

FXString toFox(const String& text) {
  const std::string utf8 = text.toUTF8();
  return FXString(utf8.data(), static_cast<FXint>(utf8.size()));
}

String fromFox(const FXString& text) {
  return String::fromUTF8(std::string_view(text.text(), static_cast<std::size_t>(text.length())));
}

FXString labelText(const String& text) {
  return toFox(doubled(withoutControls(text), u'&'));
}

FXString messageBoxText(const String& text) {
  return toFox(doubled(safePercents(fittedMessage(withoutControls(text), boxRoom())), u'&'));
}

} // namespace Tallymoor
