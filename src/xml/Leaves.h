#pragma once
#include "foundation/Date.h"
#include "xml/XMLElement.h"
#include <optional>

namespace Tallymoor {

/// Free text.
class XMLString : public XMLElement {
public:
  XMLString();
};

/// A day as "3/3/2006".
class XMLDate : public XMLElement {
public:
  XMLDate();
  /// Throws Exception when the content is no date.
  Date date() const;

  // A date that can't be read is kept in an attribute; the content is then a day far in the future, where no
  // figure counts it, until it is put right.

  static Date farOff() { return Date(9999, 1, 1); }
  /// True while it stands on that day.
  bool isSetAside() const;
  void setAside();
  /// Ends it where the content is another day now, or where the date that was kept can be read after all.
  void putBack();
  /// The text that can't be read: the one that was set aside, or the content. Nothing for a date.
  std::optional<String> unreadableText() const;

private:
  // The day is asked for far more often than it changes.
  mutable std::optional<Date> m_date;
  mutable std::uint64_t m_dateStamp = 0; ///< of the content that m_date was read from
};

/// A decimal number as text.
class XMLConstant : public XMLElement {
public:
  XMLConstant();
  /// An empty content reads as 0.
  double toDouble() const;
  std::int32_t toLong() const;
};

// What a parent's first sub-element of a reference name holds, for parents whose leaf classes are not at
// hand. They throw XMLException where there is no such sub-element.
Date dateValue(const XMLElement& parent, std::u16string_view referenceName);
double doubleValue(const XMLElement& parent, std::u16string_view referenceName);
std::int32_t longValue(const XMLElement& parent, std::u16string_view referenceName);
const String& textValue(const XMLElement& parent, std::u16string_view referenceName);

} // namespace Tallymoor
