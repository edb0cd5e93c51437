#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>

namespace Tallymoor {

class Holdings;

/// The splits and merges of a stock as a portfolio has recorded them on its purchases and sales.
class RecordedSplits {
public:
  /// By day, the first with the new number of shares: how many shares one share became; 0.5 for a merge of
  /// two into one. Answers that there was no split are left out.
  using Ratios = std::map<Date, double>;

  /// The holdings are only read here.
  RecordedSplits(const Holdings& holdings, const String& code);

  const Ratios& ratios() const { return m_ratios; }
  /// How many shares of the second day are one share of the first: what numbers are to be multiplied and
  /// prices divided by. The second day may be the earlier one.
  double sharesBetween(const Date& from, const Date& to) const;

private:
  Ratios m_ratios;
};

} // namespace Tallymoor
