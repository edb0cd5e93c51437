#include "xml/RecordTexts.h"
#include "foundation/Amounts.h"

namespace Tallymoor {

namespace {

double numberAt(double value, int decimals) {
  return String::fromDouble(value, decimals).toDouble();
}

} // namespace

String dayText(const Date& date) {
  return date.toString(DATE_DISPLAY_DMY);
}

String moneyText(double amount) {
  return String::fromDouble(amount, 2);
}

String numberText(double shares) {
  return String::fromDouble(shares, 2);
}

String recordedNumberText(double shares) {
  constexpr int MOST_DECIMALS = 6;
  int decimals = 2;
  while (decimals < MOST_DECIMALS && !showsTheSame(shares, numberAt(shares, decimals), MOST_DECIMALS))
    ++decimals;
  return String::fromDouble(shares, decimals);
}

bool hasFractionOfHundredths(const String& number) {
  // Nearly all numbers are told by their length: the walk of the capital record asks this for every parcel.
  const std::size_t point = number.find_first_not_of(u"0123456789");
  if (point == String::npos || (number[point] == u'.' && number.size() <= point + 3 &&
                                number.find_first_not_of(u"0123456789", point + 1) == String::npos))
    return false;
  const double shares = number.toDouble();
  return !showsTheSame(shares, numberAt(shares, 2), 6);
}

String priceText(double price) {
  return String::fromDouble(price, 4);
}

String dividendRateText(double rate) {
  return String::fromDouble(rate, 6);
}

} // namespace Tallymoor
