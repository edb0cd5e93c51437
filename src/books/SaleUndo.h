#pragma once

namespace Tallymoor {

class Holdings;
class SplitBook;
class XMLBuyEvent;
class XMLSellEvent;

/// Gives the shares of a sale back: to the rest of their purchase, or as a parcel among the others by its day
/// when that is null. The sale itself stays. Only the comment of a purchase that a version before this one
/// sold whole is not known any more, and the limits of a stock that was sold whole.
void giveSharesBack(Holdings& holdings, const SplitBook& splits, const XMLSellEvent& sale,
                    const XMLBuyEvent* rest);

} // namespace Tallymoor
