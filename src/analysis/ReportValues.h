#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>
#include <string_view>

namespace Tallymoor {

class XMLElement;

// How values are put into the elements of a report: as "name" in a fixed form, and as "nameShown" in the form
// that the tables show. A value that is nothing or not finite is empty in both.

void putDate(XMLElement& element, std::u16string_view name, const Date& day);
void putMoney(XMLElement& element, std::u16string_view name, const std::optional<double>& amount);
void putPrice(XMLElement& element, std::u16string_view name, const std::optional<double>& price);
void putPercent(XMLElement& element, std::u16string_view name, const std::optional<double>& percent);

} // namespace Tallymoor
