#pragma once

namespace Tallymoor {

class Table;

/// The columns of a table with a row for each held share.
void declareHeldShareColumns(Table& table);
/// The columns of a table with a row for each purchase of one share.
void declarePurchaseColumns(Table& table);

} // namespace Tallymoor
