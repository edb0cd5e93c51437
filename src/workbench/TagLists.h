#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <functional>
#include <vector>

namespace Tallymoor {

class HTMLTag;
class PlainOutput;

// Queries around a tag of a page, and their display.

/// The matching tags at and below a tag, in page order.
std::vector<const HTMLTag*> tagsBelow(const HTMLTag& start,
                                      const std::function<bool(const HTMLTag&)>& matches);
/// The direct children.
std::vector<const HTMLTag*> tagsIn(const HTMLTag& parent);
/// The following siblings, as a walk's move counts them.
std::vector<const HTMLTag*> tagsBehind(const HTMLTag& tag);
/// The preceding siblings, nearest first.
std::vector<const HTMLTag*> tagsBefore(const HTMLTag& tag);

/// Shows a line per tag with the index that a move uses. Cuts a long list.
void showIndexed(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level);
/// The same without indexes.
void showTags(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level);

} // namespace Tallymoor
