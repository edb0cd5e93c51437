#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tallymoor {

/// What the variables of one request stand for.
struct AddressValues {
  String code;    ///< as the source knows it
  String text;    ///< what is searched for
  String key;     ///< the user's own for the source
  Date first{0u}; ///< of a range of days
  Date last{0u};  ///< of a range of days
  std::size_t page = 1;
};

/// An address with variables in braces: "https://host/prices/{CODE}?from={FROM:yyyy-MM-dd}&to={TO:unixtime}".
///
/// {CODE} is the whole code, {CODE:stem} without its market suffix and {CODE:suffix} that alone; {TEXT} the
/// text of a search; {FROM:...} and {TO:...} the first and last day by a pattern in ICU's letters, or as
/// "unixtime", "milliseconds" or "days" since the start of 1970 in UTC; {PAGE} a number from 1; {KEY} the
/// user's key. Values are percent-encoded.
class AddressTemplate {
public:
  /// Throws Exception, with the address and the fault, for an unknown variable or a brace without its other.
  explicit AddressTemplate(const String& text);

  /// "https://host:port": what stands before the path. Throws Exception unless the address begins with it and
  /// no variable stands in it, so that neither a code nor a text changes the server of a request.
  String server() const;

  String fill(const AddressValues& values) const;
  /// The same for messages and logs: with "(key)" in place of the key.
  String fillForShow(const AddressValues& values) const;
  /// The same for the value of a header, which is not percent-encoded.
  String fillPlainly(const AddressValues& values) const;
  bool usesKey() const;
  bool usesRange() const;
  bool usesPage() const;

private:
  enum class Variable : std::uint8_t { None, Code, CodeStem, CodeSuffix, Text, From, To, Page, Key };
  struct Part {
    Variable variable;
    String text; ///< literal, or the pattern of a day
  };

  static Part partOf(const String& inBraces, const String& whole);
  static String valueOf(const Part& part, const AddressValues& values);
  template <typename Encode>
  String joined(const AddressValues& values, Encode encode) const;
  bool uses(Variable variable) const;

  std::vector<Part> m_parts;
};

} // namespace Tallymoor
