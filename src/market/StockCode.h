#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// A stock code in its two halves: "ABC.AX" is the base "ABC" and the suffix "AX" of its market. The first
/// point divides; a code without one is all base.
class StockCode {
public:
  explicit StockCode(const String& code);
  StockCode(const String& base, const String& suffix) : m_base(base), m_suffix(suffix) {}

  const String& base() const { return m_base; }
  const String& suffix() const { return m_suffix; }
  /// The halves rejoined; the base alone when there is no suffix.
  String text() const;

private:
  String m_base;
  String m_suffix;
};

} // namespace Tallymoor
