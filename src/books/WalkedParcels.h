#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

class XMLElement;
class XMLParcel;
class XMLSharePortfolio;

/// The parcels of a portfolio, held and sold, as a walk over its days reads them. Like WalkedCash they are
/// kept from one walk to the next, and only those of stocks that have changed are read again.
class WalkedParcels {
public:
  struct Parcel {
    const XMLParcel* event;
    bool sold;
    bool divided;                 ///< a part of a purchase whose number has more than two decimals
    Date from;                    ///< first day held
    Date until;                   ///< first day not held any more; far off for a parcel that is still held
    std::optional<double> number; ///< on every day; nothing if it has adjustments
    std::vector<Date> adjusted;   ///< the days on which its adjustments start
  };
  /// A stock as one element of the records has it; the held and the sold parcels of a code are two.
  struct Stock {
    String code;
    std::vector<Parcel> parcels; ///< in the order of the records
  };

  /// Reads what has changed since the last time. Throws Exception for a day that can't be read.
  void read(const XMLSharePortfolio& portfolio);
  /// In the order of the records, those that are held first. Valid until the next read.
  const std::vector<const Stock*>& stocks() const { return m_stocks; }

private:
  struct Kept {
    std::uint64_t stamp; ///< of the element when it was read
    Stock stock;
  };
  using KeptStocks = std::unordered_map<const XMLElement*, Kept>;

  template <class Element>
  void add(KeptStocks& before, const Element& element);

  KeptStocks m_kept;
  std::vector<const Stock*> m_stocks; ///< in m_kept
};

} // namespace Tallymoor
