#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <string_view>

namespace Tallymoor {

class HTMLTag;

// How the workbench shows pieces of a page.

/// The text as a browser shows it: runs of white space are one blank, none at the ends, and the common
/// character references are replaced by what they stand for.
String asShown(std::u16string_view text);
/// On one line and cut to a length that leaves room for more on it.
String shortened(std::u16string_view text, std::size_t most = 60);
/// The same in quotation marks.
String inQuotes(std::u16string_view text);
/// As in "1 row" and "3 rows".
String counted(std::size_t number, const char16_t* one, const char16_t* many);
/// With blanks behind it up to the width.
String padded(const String& text, std::size_t width);
String numberText(std::size_t number);

/// As in `<td class="price">`: the tag's first attributes, cut.
String tagTitle(const HTMLTag& tag);
/// The title with the tag's text, or with the number of tags in it.
String tagSummary(const HTMLTag& tag);
/// The tags around a tag, from the outermost: "html > body > table id="prices" > tr > td".
String placeOf(const HTMLTag& tag);

/// True for a text that holds nothing which an XML document can't hold.
bool isWritableInXml(std::u16string_view text);

} // namespace Tallymoor
