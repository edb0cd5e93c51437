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

/// The text before, led to the text after by their differences.
std::string ledBy(const std::vector<ElementText::Difference>& differences, const std::string& before) {
  std::string after;
  std::size_t done = 0;
  for (const ElementText::Difference& difference : differences) {
    EXPECT_LE(done, difference.place);
    EXPECT_EQ(difference.before, before.substr(difference.place, difference.before.size()));
    after += before.substr(done, difference.place - done) + difference.after;
    done = difference.place + difference.before.size();
  }
  return after + before.substr(done);
}

std::size_t sizeOf(const std::vector<ElementText::Difference>& differences) {
  std::size_t size = 0;
  for (const ElementText::Difference& difference : differences)
    size += difference.before.size() + difference.after.size();
  return size;
}

TEST(ElementTextTest, IsThatOfEncodeWhateverChanges) {
  XMLSharePortfolio portfolio;
  portfolio.setPortfolioName(u"Trading");
  for (int i = 0; i < 300; ++i)
    addCash(portfolio, i);
  ElementText text(portfolio);
  std::mt19937 random(1);
  const auto below = [&random](std::size_t count) { return random() % count; };
  for (int round = 0; round < 1000; ++round) {
    const auto cash = portfolio.cashEvents();
    const auto shares = portfolio.heldShares();
    switch (below(9)) {
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
    case 6:
      if (!shares.empty()) // a stock whose text is kept in parts
        for (int i = 0; i < 30; ++i)
          shares[0].parcels().add().setNumberText(String::fromLong(i));
      break;
    case 7:
      if (!shares.empty() && shares[0].parcels().size() > 30)
        for (int i = 0; i < 29; ++i)
          shares[0].parcels().remove(shares[0].parcels()[below(shares[0].parcels().size())]);
      break;
    default:
      portfolio.setPortfolioName(String::fromLong(round));
    }
    const ElementText now(portfolio, &text);
    ASSERT_EQ(encoded(portfolio), now.text()) << round;
    const TextFingerprint fresh(now.text());
    ASSERT_EQ(fresh.values(), now.fingerprint().values()) << round;
    ASSERT_EQ(fresh.length(), now.fingerprint().length()) << round;
    ASSERT_EQ(now.text(), ledBy(ElementText::differences(text, now), text.text())) << round;
    text = now;
  }
}

TEST(ElementTextTest, DifferencesAreThoseOfTheElementsThatHaveChanged) {
  XMLSharePortfolio portfolio;
  addStock(portfolio, u"ABC.AX");
  for (int i = 0; i < 1000; ++i) {
    addCash(portfolio, i);
    portfolio.heldShares()[0].parcels().add().setNumberText(String::fromLong(i));
  }
  const ElementText before(portfolio);
  addCash(portfolio, 5);
  portfolio.cashEvents().remove(portfolio.cashEvents()[500]);
  portfolio.heldShares()[0].parcels()[700].setComment(u"changed");
  const ElementText after(portfolio, &before);
  const auto differences = ElementText::differences(before, after);
  EXPECT_EQ(3U, differences.size());
  EXPECT_GT(1500U, sizeOf(differences));
  EXPECT_EQ(after.text(), ledBy(differences, before.text()));
}

TEST(ElementTextTest, TheDifferenceOfOtherElementsIsThatOfTheWholeTexts) {
  XMLSharePortfolio portfolio;
  for (int i = 0; i < 1000; ++i)
    addCash(portfolio, i);
  const ElementText before(portfolio);
  const XMLSharePortfolio copy = portfolio;
  static_cast<XMLElement&>(portfolio) = copy;
  const auto differences = ElementText::differences(before, ElementText(portfolio, &before));
  ASSERT_EQ(1U, differences.size());
  EXPECT_EQ(before.text(), differences[0].before);
  EXPECT_EQ(before.text(), differences[0].after);
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

TEST(ElementTextTest, ADocumentOfKnownTextsIsThatOfEncode) {
  XMLPortfolios records;
  records.decode(
      "<!-- before --><Portfolios later=\"1\"><!-- a --><SharePortfolio><String>T</String><HeldShares/>"
      "<SoldShares/><Dividends/><CashReserve/></SharePortfolio><SharePortfolio><String>U</String>"
      "<HeldShares/><SoldShares/><Dividends/><CashReserve/></SharePortfolio><!-- end --></Portfolios>"
      "<!-- after -->");
  std::ostringstream expected;
  records.encodeWithDoctype(expected, u"Records.dtd");
  const ElementText first(records.portfolios()[0]);
  const DocumentText text(records, u"Records.dtd", [&](const XMLElement& element) {
    return &element == &records.portfolios()[0] ? &first : nullptr;
  });
  records.portfolios()[1].setPortfolioName(u"V");
  EXPECT_EQ(expected.str(), text.text()) << "of the moment when it was made";
}

TEST(ElementTextTest, AnEmptyDocumentIsThatOfEncode) {
  for (const char* document : {"<Portfolios/>", "<Portfolios><!-- a --></Portfolios><!-- b -->"}) {
    XMLPortfolios records;
    records.decode(document);
    std::ostringstream expected;
    records.encodeWithDoctype(expected, u"Records.dtd");
    const auto unknown = [](const XMLElement&) { return nullptr; };
    EXPECT_EQ(expected.str(), DocumentText(records, u"Records.dtd", unknown).text());
  }
}

TEST(ElementTextTest, AnElementThatCannotBeWrittenThrows) {
  XMLSharePortfolio portfolio;
  const ElementText text(portfolio);
  portfolio.heldShares().add(); // without a purchase
  EXPECT_THROW(ElementText(portfolio, &text), XMLException);
}

} // namespace
} // namespace Tallymoor
