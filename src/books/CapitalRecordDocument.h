#pragma once
#include "books/CapitalDays.h"
#include "foundation/String.h"
#include <iosfwd>

namespace Tallymoor {

/// The document of a capital record: its head (the portfolio's name and the root's attributes, with no days)
/// and its days.
struct CapitalRecordDocument {
  XMLSharePortfolioCapitalRecord head;
  CapitalDays days;

  /// Reads a file. One that stands in the very form in which it is written is read straight into the days;
  /// any other, be it good or bad, by elements. Throws Exception when it can't be read or its days do not
  /// rise; what is here then is to be cleared.
  void read(const String& path);
  /// The first half of read: false for a document that wants to be read by elements.
  bool readPlain(const String& path);
  /// Writes the same document as its elements would.
  void write(std::ostream& stream);
  /// Replaces the file. The finished temporary is read once before that. Throws Exception; the old file then
  /// stands.
  void writeFile(const String& path);
  /// Takes away all days, the name and the attributes.
  void clear();
};

} // namespace Tallymoor
