#include "entry/RecordedEntries.h"
#include "engine/CashBalance.h"
#include "engine/SaleFigures.h"
#include "engine/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "widgets/FormNotes.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"
#include <functional>

namespace Tallymoor {

FXIMPLEMENT(RecordedEntries, FXGroupBox, nullptr, 0)

namespace {

using LineOf = std::function<String(const XMLElement& event)>;

String day(const XMLElement& event, std::u16string_view name) {
  return dateValue(event, name).toString(DATE_DISPLAY_LOCAL);
}

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

String trade(double number, const String& code, double price) {
  return String::fromDouble(number, 2) + u" " + code + u" at " + shortPriceText(price);
}

/// A line for each event, below the heading; nothing at all for none. A line may be empty for an event that
/// is not shown.
String section(const String& heading, const XMLElement& parent, std::u16string_view events,
               const LineOf& line) {
  String text;
  for (std::size_t i = 0; i < parent.numSubElements(events); ++i)
    if (const String shown = line(parent.subElement(events, i)); !shown.empty())
      text += u"\n" + shown;
  return text.empty() ? text : heading + text + u"\n";
}

String lines(const XMLElement& parent, std::u16string_view events, const LineOf& line) {
  const String text = section(String(), parent, events, line);
  return text.empty() ? text : String(text.substr(1, text.size() - 2));
}

/// In shares of today, as the forms count them.
String purchases(const XMLElement& stock) {
  const String code = textValue(stock, u"Code");
  return lines(stock, u"BuyEvents", [&code](const XMLElement& event) {
    const SharesAt held = sharesOn(event, Date());
    return day(event, u"BuyDate") + u"  " + trade(held.number, code, held.price);
  });
}

String sales(const XMLElement& stock) {
  return lines(stock, u"SellEvents", [](const XMLElement& event) {
    const SaleFigures sale(event);
    return day(event, u"SellDate") + u"  " + trade(sale.number(), sale.code(), sale.sellPrice());
  });
}

String dividend(const XMLElement& event) {
  return day(event, u"ReceiveDate") + u"  " + textValue(event, u"Code") + u" " +
         money(doubleValue(event, u"NumHeld") * doubleValue(event, u"Rate"));
}

/// What trades and dividends have booked is told by their own lines.
String ownCash(const XMLElement& event) {
  const std::int32_t type = longValue(event, u"Type");
  if (type != CASH_EVENT_INTEREST && !isExternalType(type))
    return String();
  const String kind = type == CASH_EVENT_INTEREST  ? u"interest "
                      : type == CASH_EVENT_DEPOSIT ? u"deposit "
                                                   : u"withdrawal ";
  return day(event, u"Date") + u"  " + kind + money(doubleValue(event, u"Value"));
}

String entriesOf(const XMLElement& portfolio) {
  const String text = section(u"Cash", portfolio.subElement(u"CashReserve"), u"CashEvents", ownCash) +
                      section(u"Shares held", portfolio.subElement(u"HeldShares"), u"HeldShares", purchases) +
                      section(u"Dividends", portfolio.subElement(u"Dividends"), u"DividendEvents", dividend) +
                      section(u"Shares sold", portfolio.subElement(u"SoldShares"), u"SoldShares", sales);
  return text.empty() ? String(u"Nothing yet.")
                      : text + u"Cash reserve now: " + money(cashBalance(portfolio, Date()));
}

} // namespace

RecordedEntries::RecordedEntries(FXComposite* parent)
    : FXGroupBox(parent, "Recorded so far", GROUPBOX_NORMAL | FRAME_GROOVE | LAYOUT_FIX_WIDTH | LAYOUT_FILL_Y,
                 0, 0, scaledToText(280), 0) {
  auto* frame = new FXHorizontalFrame(this, FRAME_SUNKEN | FRAME_THICK | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0,
                                      0, 0, 0, 0, 0, 0);
  m_list = new FormNotes(frame, TEXT_READONLY | TEXT_WORDWRAP | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  m_list->setBackColor(getApp()->getBaseColor());
  m_list->setVisibleColumns(1); // the text wraps, so its width is what the form leaves
  show(nullptr);
}

void RecordedEntries::show(const XMLElement* portfolio) {
  const FXString text = toFox(portfolio ? entriesOf(*portfolio) : u"Nothing yet.");
  if (text != m_list->getText())
    m_list->setText(text);
}

bool hasEntries(const XMLElement& portfolio) {
  return portfolio.subElement(u"CashReserve").numSubElements(u"CashEvents") > 0 ||
         portfolio.subElement(u"HeldShares").numSubElements(u"HeldShares") > 0 ||
         portfolio.subElement(u"SoldShares").numSubElements(u"SoldShares") > 0 ||
         portfolio.subElement(u"Dividends").numSubElements(u"DividendEvents") > 0;
}

} // namespace Tallymoor
