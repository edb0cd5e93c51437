#include "books/SaleParts.h"
#include "books/SplitTerms.h"
#include "books/Trade.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include "xml/RecordTexts.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// Shares of the day as the parcel records them: only what a split has divided needs more than hundredths.
String recordedText(const XMLBuyEvent& parcel, const Date& day, double shares) {
  return isSplitBy(parcel, day) ? recordedNumberText(sharesAsBought(parcel, day, {shares, 0.0}).number)
                                : numberText(shares);
}

std::vector<XMLBuyEvent*> inOrderOfSale(XMLHeldShare& stock, bool firstInFirstOut) {
  std::vector<XMLBuyEvent*> parcels;
  for (XMLBuyEvent& parcel : stock.parcels())
    if (!parcel.isSetAside())
      parcels.push_back(&parcel);
  if (!firstInFirstOut)
    std::reverse(parcels.begin(), parcels.end());
  return parcels;
}

SalePart partOf(XMLBuyEvent& parcel, const Date& day, double wanted) {
  const double available = sharesOn(parcel, day).number;
  const String number = recordedText(parcel, day, wanted);
  const String rest = recordedNumberText(parcel.number() - number.toDouble());
  // A rest that would be recorded, or read, as 0.00 shares goes with the parcel.
  if (wanted < available && !showsAsZero(available - wanted, 2) && rest.toDouble() > 0.0)
    return {&parcel, wanted, number, rest};
  // A number that a split divided may come back as 200.000001; the cash is that of the 200 that were typed.
  const String& whole = parcel.numberText();
  return {&parcel, isSplitBy(parcel, day) && number == whole ? wanted : available, whole, String()};
}

} // namespace

std::vector<SalePart> partsOfSale(XMLHeldShare& stock, const Trade& sale, bool firstInFirstOut) {
  std::vector<SalePart> parts;
  double sold = 0.0;
  for (XMLBuyEvent* parcel : inOrderOfSale(stock, firstInFirstOut)) {
    if (isAllSold(sold, sale.number))
      break;
    parts.push_back(partOf(*parcel, sale.date, sale.number - sold));
    sold += parts.back().taken;
  }
  return parts;
}

bool isAllSold(double sold, double number) {
  return sold >= number || showsTheSame(sold, number, 4);
}

} // namespace Tallymoor
