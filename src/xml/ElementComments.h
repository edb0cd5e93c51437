#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class XMLElement;

/// The comments that a user wrote by hand into a document, by the element that they go with: what stands
/// before an element moves, is copied and is removed with it. They are rare, and elements are many, so they
/// are kept beside the elements, which know by a mark that they have some. Safe on any thread.
struct ElementComments {
  using Texts = std::vector<String>;

  Texts before; ///< in front of the start tag
  Texts inside; ///< in front of the end tag, behind all else
  Texts after;  ///< behind the end tag, of a root alone

  /// Those of an element; empty where it has none.
  static ElementComments of(const XMLElement& element);
  static void set(const XMLElement& element, ElementComments comments);
  static void remove(const XMLElement& element);
};

} // namespace Tallymoor
