#pragma once
#include "xml/ElementPool.h"
#include "xml/Leaves.h"

namespace Tallymoor {

// The prices fetched for one code, kept between runs.

/// Root: "Code" and any number of "Values" in date order. The attribute "IsBad" is "true" for a code that the
/// data source does not know; otherwise it is not written.
class XMLShareValues : public XMLElement {
public:
  XMLShareValues();
  bool isBad() const;
};

/// One day: "Date", "Close", "High", "Low", "Volume". Pooled: made by create().
class XMLShareValue : public XMLElement {
public:
  XMLShareValue();
  static XMLElement* create();
  void destroy() override;
  static ElementPool<XMLShareValue>& pool();

  /// Throws Exception when the content is no date.
  Date date() const;
  /// A number without a value reads as 0.
  double close() const;
  double high() const;
  double low() const;
  std::int32_t volume() const;
};

} // namespace Tallymoor
