#include "xml/ElementText.h"
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace Tallymoor {
namespace {

std::string encoded(XMLElement& element) {
  std::ostringstream stream;
  element.encode(stream);
  return stream.str();
}

void addCash(XMLSharePortfolio& portfolio, int amount) {
  XMLCashEvent& event = portfolio.cashEvents().add();
  event.setType(CASH_EVENT_DEPOSIT);
  event.set(Date(2006, 3, 3), amount, u"DEPOSIT \u00e9 <&>");
}

void addStock(XMLSharePortfolio& portfolio, const String& code) {
  XMLHeldShare& share = portfolio.heldShares().add();
  share.setCode(code);
  share.parcels().add().setNumberText(u"1.00");
}

TEST(ElementTextTest, IsThatOfEncodeWhateverChanges) {
  XMLSharePortfolio portfolio;
  portfolio.setPortfolioName(u"Trading");
  ElementText text(portfolio);
  std::mt19937 random(1);
  const auto below = [&random](std::size_t count) { return random() % count; };
  for (int round = 0; round < 500; ++round) {
    const auto cash = portfolio.cashEvents();
    const auto shares = portfolio.heldShares();
    switch (below(7)) {
    case 0:
    case 1:
      addCash(portfolio, round);
      break;
    case 2:
      addStock(portfolio, u"A" + String::fromLong(round));
      break;
    case 3:
      if (!cash.empty())
        cash.remove(cash[below(cash.size())]);
      break;
    case 4:
      if (!shares.empty())
        shares[below(shares.size())].parcels()[0].setComment(String::fromLong(round));
      break;
    case 5:
      if (!shares.empty())
        shares.moveLastTo(below(shares.size()));
      break;
    default:
      portfolio.setPortfolioName(String::fromLong(round));
    }
    text = ElementText(portfolio, &text);
    ASSERT_EQ(encoded(portfolio), text.text()) << round;
  }
}

TEST(ElementTextTest, HoldsCommentsAndAttributes) {
  XMLPortfolios records;
  records.decode(
      "<Portfolios><!-- a --><SharePortfolio><String>T</String><HeldShares/><!-- b --><SoldShares/>"
      "<Dividends/><CashReserve><!-- c --><CashEvent><Date later=\"1\">3/3/2006</Date>"
      "<Constant>1.00</Constant><Constant>4</Constant><String/></CashEvent><!-- d --></CashReserve>"
      "</SharePortfolio></Portfolios>");
  XMLSharePortfolio& portfolio = records.portfolios()[0];
  const ElementText first(portfolio);
  EXPECT_EQ(encoded(portfolio), first.text());
  addCash(portfolio, 2);
  EXPECT_EQ(encoded(portfolio), ElementText(portfolio, &first).text());
}

TEST(ElementTextTest, AnElementThatCannotBeWrittenThrows) {
  XMLSharePortfolio portfolio;
  const ElementText text(portfolio);
  portfolio.heldShares().add(); // without a purchase
  EXPECT_THROW(ElementText(portfolio, &text), XMLException);
}

} // namespace
} // namespace Tallymoor
