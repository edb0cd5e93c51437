#include "entry/RecordedEntries.h"
#include "analysis/DividendFigures.h"
#include "analysis/SaleFigures.h"
#include "books/CashBalance.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "widgets/FormNotes.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(RecordedEntries, FXGroupBox, nullptr, 0)

namespace {

String dayOf(const XMLEvent& event) {
  return event.day().toString(DATE_DISPLAY_LOCAL);
}

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

String trade(double number, const String& code, double price) {
  return String::fromDouble(number, 2) + u" " + code + u" at " + shortPriceText(price);
}

/// A line for each event, below the heading; nothing at all for none. A line may be empty for an event that
/// is not shown.
template <class Event, class LineOf>
String section(const String& heading, const ElementList<const Event>& events, const LineOf& line) {
  String text;
  for (const Event& event : events)
    if (const String shown = line(event); !shown.empty())
      text += u"\n" + shown;
  return text.empty() ? text : heading + text + u"\n";
}

template <class Event, class LineOf>
String lines(const ElementList<const Event>& events, const LineOf& line) {
  const String text = section(String(), events, line);
  return text.empty() ? text : String(text.substr(1, text.size() - 2));
}

/// In shares of today, as the forms count them.
String purchases(const XMLHeldShare& stock) {
  return lines(stock.parcels(), [&stock](const XMLBuyEvent& parcel) {
    const SharesAt held = sharesOn(parcel, Date());
    return dayOf(parcel) + u"  " + trade(held.number, stock.code(), held.price);
  });
}

String sales(const XMLSoldShare& stock) {
  return lines(stock.sales(), [](const XMLSellEvent& event) {
    const SaleFigures sale(event);
    return dayOf(event) + u"  " + trade(sale.number(), sale.code(), sale.sellPrice());
  });
}

String dividend(const XMLDividendEvent& event) {
  return dayOf(event) + u"  " + event.code() + u" " + money(DividendFigures(event).value());
}

/// What trades and dividends have booked is told by their own lines.
String ownCash(const XMLCashEvent& event) {
  const CashEventType type = event.type();
  if (type != CASH_EVENT_INTEREST && !event.isExternal())
    return String();
  const String kind = type == CASH_EVENT_INTEREST  ? u"interest "
                      : type == CASH_EVENT_DEPOSIT ? u"deposit "
                                                   : u"withdrawal ";
  return dayOf(event) + u"  " + kind + money(event.amount());
}

String entriesOf(const XMLSharePortfolio& portfolio) {
  const String text = section(u"Cash", portfolio.cashEvents(), ownCash) +
                      section(u"Shares held", portfolio.heldShares(), purchases) +
                      section(u"Dividends", portfolio.dividends(), dividend) +
                      section(u"Shares sold", portfolio.soldShares(), sales);
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

void RecordedEntries::show(const XMLSharePortfolio* portfolio) {
  const FXString text = toFox(portfolio ? entriesOf(*portfolio) : u"Nothing yet.");
  if (text != m_list->getText())
    m_list->setText(text);
}

bool hasEntries(const XMLSharePortfolio& portfolio) {
  return !portfolio.cashEvents().empty() || !portfolio.heldShares().empty() ||
         !portfolio.soldShares().empty() || !portfolio.dividends().empty();
}

} // namespace Tallymoor
