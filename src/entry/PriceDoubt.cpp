#include "entry/PriceDoubt.h"
#include "entry/FormChecks.h"
#include "entry/KnownPrice.h"
#include "foundation/Amounts.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

namespace {

bool isFarFrom(double price, double priceOfDay) {
  constexpr double FAR = 1.25;
  return price > priceOfDay * FAR || price * FAR < priceOfDay;
}

} // namespace

void PriceDoubt::beginWith(const NumberField& price, const Date& day) {
  m_recorded = price.text();
  m_day = day;
}

bool PriceDoubt::check(NumberField& field, const String& code, const Date& day) const {
  const double price = field.value();
  const bool isRecorded = field.text() == m_recorded && day == m_day;
  if (isRecorded || showsAsZero(price))
    return true;
  const KnownPrice known = priceOfDay(code, day, nullptr);
  return showsAsZero(known.price) || known.day != day || !isFarFrom(price, known.price) ||
         confirm(field, u"The price of " + shortPriceText(price) + u" is far from that of " + code + u" on " +
                            day.toString(DATE_DISPLAY_LOCAL) + u", which was " + shortPriceText(known.price) +
                            u".\nDo you want to record it all the same?");
}

} // namespace Tallymoor
