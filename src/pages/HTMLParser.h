#pragma once
#include "pages/HTMLTag.h"
#include <cstddef>
#include <memory>

namespace Tallymoor {

class HTMLWalkLimit;

/// A parsed page: points to its "html" tag and keeps every tag of the page alive.
using HTMLPage = std::shared_ptr<const HTMLTag>;

/// Turns the text of a web page, well formed or not, into a tree of tags.
///
/// Locator documents address tags by position, so the exact shape of the tree is a contract with them, its
/// oddities included: tags that are never closed become siblings of what follows them, text counts only right
/// before a closing tag, nothing is decoded, and a closed tag may be found under two parents when its name is
/// also that of a tag around it. See HTMLReader for how that comes about. Time is linear in the length of
/// the page, whatever its shape.
class HTMLParser {
public:
  /// The page keeps the text: hand it over with std::move where it is not needed any more.
  /// Throws HTMLException "HTMLParser::Parse - no tags found", "HTMLParser::Parse - no html tag found" or
  /// "HTMLParser::FindScriptEnd - failed to find script end!".
  static HTMLPage Parse(String html);

  /// The index-th sub tag (from 0) with that name, or null. Throws HTMLException "HTMLParser::FindTag - bad
  /// param" for a null parent or an empty name. Each tag looked at is taken off the limit, if one is given.
  static const HTMLTag* FindTag(const HTMLTag* parent, const String& name, std::size_t index,
                                HTMLWalkLimit* limit = nullptr);
  /// The index-th tag (from 0) with that name among those that follow the tag under its parent, or null; null
  /// too when it has no parent. Same failure and limit.
  static const HTMLTag* FindSiblingTag(const HTMLTag* tag, const String& name, std::size_t index,
                                       HTMLWalkLimit* limit = nullptr);
};

} // namespace Tallymoor
