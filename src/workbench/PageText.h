#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <string_view>

namespace Tallymoor {

class HTMLTag;

// Display of parts of a page.

/// The text as a browser shows it: collapses and trims white space and replaces common character references.
String asShown(std::u16string_view text);
/// One line, cut to a maximum length.
String shortened(std::u16string_view text, std::size_t most = 60);
/// The shortened text in quotation marks.
String inQuotes(std::u16string_view text);
/// "1 row" or "3 rows".
String counted(std::size_t number, const char16_t* one, const char16_t* many);
/// Appends blanks up to the width.
String padded(const String& text, std::size_t width);
String numberText(std::size_t number);

/// `<td class="price">`: the tag's first attributes, shortened.
String tagTitle(const HTMLTag& tag);
/// The title followed by the tag's text, or by the number of tags inside it.
String tagSummary(const HTMLTag& tag);
/// The path of a tag from the root: "html > body > table id="prices" > tr > td".
String placeOf(const HTMLTag& tag);

/// True if an XML document can contain the text.
bool isWritableInXml(std::u16string_view text);

} // namespace Tallymoor
