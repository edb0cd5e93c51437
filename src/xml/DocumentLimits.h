#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <limits>
#include <string_view>

namespace Tallymoor {

/// How much of a document is read before it is refused, so that a small file can't take all of the machine
/// and a large one not without need. Limits lie far above what honest documents hold, and nothing is ever
/// refused for its size that the program wrote itself: records and capital records have no bound of their
/// own.
///
/// For every document, whatever its origin:
/// - An element's text has at most LONGEST_TEXT units, and an element MOST_ATTRIBUTES attributes.
/// - Elements may outnumber bytes / BYTES_PER_ELEMENT only by FREE_ELEMENTS. Elements that exist without
/// being
///   mentioned count, so this is what stops a file of a million empty events, each of which would become ten
///   elements. What the program writes mentions all of them, and is never so dense: the leanest is a sale
///   with nothing in it, 101 bytes for 9 elements.
/// - The parser holds at most PARSER_MEMORY bytes, whatever a name, comment or attribute would have it hold.
/// - A file of CHECKED_END or more bytes must hold the end of its root among its last ones. One that was cut
///   short is thus refused before it is read, and not after.
struct DocumentLimits {
  static constexpr std::size_t MEGABYTE = 1024 * 1024;
  static constexpr std::size_t LONGEST_TEXT = 2 * MEGABYTE;
  static constexpr std::size_t MOST_ATTRIBUTES = 256;
  static constexpr std::size_t BYTES_PER_ELEMENT = 11;
  static constexpr std::size_t FREE_ELEMENTS = 10000;
  static constexpr std::size_t PARSER_MEMORY = 16 * MEGABYTE;
  static constexpr std::size_t CHECKED_END = 4 * MEGABYTE;

  std::size_t bytes = std::numeric_limits<std::size_t>::max();
  std::size_t siblings = std::numeric_limits<std::size_t>::max(); ///< instances of one kind in one parent

  /// By the name of the document's root:
  /// - What services deliver (locators, countries, lists of versions, adverts, the stylesheet) takes up to 50
  ///   kB. 2 MB are read.
  /// - A file of prices has a row of at most 175 bytes for each day. No row is kept from before 1900, so
  /// there
  ///   are fewer than 47,000 until 2028. 65,000 rows and 16 MB are read, enough until 2077.
  /// - Portfolios and capital records are the user's own: 30 years with 200 stocks make a capital record of
  ///   2.2 million rows and 200 MB. A file to import is bounded where it is chosen.
  static DocumentLimits of(std::u16string_view rootName);
};

/// "2 MB"
String inMegabytes(std::size_t bytes);

} // namespace Tallymoor
