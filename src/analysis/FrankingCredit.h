#pragma once

namespace Tallymoor {

/// Company tax that an Australian company has paid on a dividend already, which the shareholder may set off:
/// by the tax rate of 30 percent, three sevenths of the franked part. It is shown only; no cash moves.
double frankingCredit(double numHeld, double rate, double percentFranked);

} // namespace Tallymoor
