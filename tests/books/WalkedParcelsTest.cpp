// What a walk keeps of the parcels must be what a new one reads.
#include "books/WalkedParcels.h"
#include "books/BooksTest.h"
#include "foundation/Exception.h"
#include <array>
#include <random>

namespace Tallymoor {
namespace {

class WalkedParcelsTest : public BooksTest {
protected:
  void buy(const String& code, const Date& day, double number) {
    user().addBuyEvent(code, {day, number, 2.0, 0.0, u""});
  }
  void sell(const String& code, const Date& day, double number) {
    user().sellShares(code, {day, number, 2.0, 0.0, u""}, true);
  }
  void expectAsReadAnew(const std::string& when) {
    m_kept.read(user().portfolio());
    WalkedParcels fresh;
    fresh.read(user().portfolio());
    ASSERT_EQ(fresh.stocks().size(), m_kept.stocks().size()) << when;
    for (std::size_t i = 0; i < fresh.stocks().size(); ++i)
      expectSame(*fresh.stocks()[i], *m_kept.stocks()[i], when);
  }

  WalkedParcels m_kept;

private:
  static void expectSame(const WalkedParcels::Stock& expected, const WalkedParcels::Stock& stock,
                         const std::string& when) {
    EXPECT_EQ(expected.code, stock.code) << when;
    ASSERT_EQ(expected.parcels.size(), stock.parcels.size()) << when;
    for (std::size_t i = 0; i < expected.parcels.size(); ++i) {
      EXPECT_EQ(expected.parcels[i].event, stock.parcels[i].event) << when;
      EXPECT_EQ(expected.parcels[i].sold, stock.parcels[i].sold) << when;
      EXPECT_EQ(expected.parcels[i].divided, stock.parcels[i].divided) << when;
      EXPECT_EQ(expected.parcels[i].from, stock.parcels[i].from) << when;
      EXPECT_EQ(expected.parcels[i].until, stock.parcels[i].until) << when;
      EXPECT_EQ(expected.parcels[i].number, stock.parcels[i].number) << when;
      EXPECT_EQ(expected.parcels[i].adjusted, stock.parcels[i].adjusted) << when;
    }
  }
};

TEST_F(WalkedParcelsTest, FollowsEveryChange) {
  const std::array<String, 3> codes{String(u"AAA.AX"), String(u"BBB.AX"), String(u"CCC.AX")};
  std::mt19937 random(4669); // The same changes in each run.
  const auto upTo = [&random](std::size_t most) { return random() % most; };
  expectAsReadAnew("without stocks");
  for (int step = 0; step < 300; ++step) {
    const String& code = codes.at(upTo(codes.size()));
    const Date day = Date(2026, 2, 1).plusDays(static_cast<int>(upTo(20)));
    XMLHeldShare* held = user().findHeldShare(code);
    switch (held ? upTo(6) : 0) {
    case 0:
    case 1:
      buy(code, Date(2026, 1, 1).plusDays(static_cast<int>(upTo(20))), 100.0 + static_cast<double>(upTo(9)));
      break;
    case 2:
      sell(code, day, 30.0);
      break;
    case 3:
      user().recordAdjustment(code, day, 2 + static_cast<std::int32_t>(upTo(2)), upTo(2) == 0);
      break;
    case 4:
      if (XMLSoldShare* sold = user().findSoldShare(code))
        user().undoSale(sold->sales()[upTo(sold->sales().size())]);
      break;
    default:
      user().removeHeldShare(code);
      break;
    }
    expectAsReadAnew("step " + std::to_string(step));
  }
}

TEST_F(WalkedParcelsTest, ANumberIsThatOfEveryDayOnlyWithoutSplits) {
  buy(u"AAA.AX", Date(2026, 1, 5), 100.0);
  buy(u"BBB.AX", Date(2026, 1, 6), 50.0);
  user().recordAdjustment(u"BBB.AX", Date(2026, 2, 1), 2, false);
  m_kept.read(user().portfolio());
  ASSERT_EQ(2u, m_kept.stocks().size());
  EXPECT_EQ(100.0, m_kept.stocks()[0]->parcels[0].number);
  EXPECT_EQ(std::nullopt, m_kept.stocks()[1]->parcels[0].number);
  EXPECT_EQ(std::vector<Date>{Date(2026, 2, 1)}, m_kept.stocks()[1]->parcels[0].adjusted);
}

TEST_F(WalkedParcelsTest, AParcelThatCannotBeReadIsReadWhenItIsMended) {
  buy(u"AAA.AX", Date(2026, 1, 5), 100.0);
  buy(u"BBB.AX", Date(2026, 1, 6), 50.0);
  expectAsReadAnew("before");
  XMLDate& date = *parcel(u"BBB.AX").dates().front();
  date.setValue(u"no day");
  EXPECT_THROW(m_kept.read(user().portfolio()), Exception);
  EXPECT_THROW(m_kept.read(user().portfolio()), Exception);
  date.setValue(u"7/1/2026");
  expectAsReadAnew("mended");
}

} // namespace
} // namespace Tallymoor
