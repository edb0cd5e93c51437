#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <functional>
#include <vector>

namespace Tallymoor {

class HTMLTag;
class PlainOutput;

// What there is around a tag of a page.

/// The tags below a tag, itself included, that match, in the order of the page.
std::vector<const HTMLTag*> tagsBelow(const HTMLTag& start,
                                      const std::function<bool(const HTMLTag&)>& matches);
/// The tags directly in it.
std::vector<const HTMLTag*> tagsIn(const HTMLTag& parent);
/// Those that follow it under its parent, as a move of a walk sees them.
std::vector<const HTMLTag*> tagsBehind(const HTMLTag& tag);
/// Those before it under its parent, the nearest first.
std::vector<const HTMLTag*> tagsBefore(const HTMLTag& tag);

/// A line for each tag, with the index by which a move reaches it; the list is cut when it is long.
void showIndexed(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level);
/// The same without indexes.
void showTags(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level);

} // namespace Tallymoor
