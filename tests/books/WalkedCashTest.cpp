// What a walk keeps of the cash must be what a new one reads.
#include "books/WalkedCash.h"
#include "books/BooksTest.h"
#include "foundation/Exception.h"
#include <random>

namespace Tallymoor {
namespace {

class WalkedCashTest : public BooksTest {
protected:
  ElementList<XMLCashEvent> events() { return user().portfolio().cashEvents(); }
  void deposit(const Date& day, double amount) {
    user().creditCash(day, amount, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  }
  void expectAsReadAnew(const std::string& when) {
    m_kept.read(user().portfolio());
    WalkedCash fresh;
    fresh.read(user().portfolio());
    EXPECT_EQ(fresh.days(), m_kept.days()) << when;
    ASSERT_EQ(fresh.entries().size(), m_kept.entries().size()) << when;
    for (std::size_t i = 0; i < fresh.entries().size(); ++i) {
      const WalkedCash::Entry& expected = fresh.entries()[i];
      const WalkedCash::Entry& entry = m_kept.entries()[i];
      EXPECT_EQ(expected.event, entry.event) << when;
      EXPECT_EQ(expected.day, entry.day) << when;
      EXPECT_EQ(expected.value, entry.value) << when;
      EXPECT_EQ(expected.external, entry.external) << when;
      EXPECT_EQ(expected.interest, entry.interest) << when;
    }
  }

  WalkedCash m_kept;
};

TEST_F(WalkedCashTest, FollowsEveryChange) {
  expectAsReadAnew("without entries");
  std::mt19937 random(57721); // The same changes in each run.
  const auto upTo = [&random](std::size_t most) { return random() % most; };
  for (int step = 0; step < 300; ++step) {
    const Date day = Date(2026, 2, 1).plusDays(static_cast<int>(upTo(30)));
    const double amount = 1.0 + static_cast<double>(upTo(1000)) / 8;
    const std::size_t place = events().empty() ? 0 : upTo(events().size());
    switch (events().empty() ? 0 : upTo(7)) {
    case 0:
      deposit(day, amount);
      break;
    case 6:
      user().creditCash(day, amount, CASH_EVENT_INTEREST, u"INTEREST");
      break;
    case 1:
      user().debitCash(day, amount, CASH_EVENT_DEBIT, u"fee");
      break;
    case 2:
      user().editCashEvent(events()[place], day, events()[place].day(), amount, u"edited");
      break;
    case 3:
      user().deleteCashEvent(events()[place]);
      break;
    case 4: // One goes and another one comes, perhaps at its place in memory.
      user().deleteCashEvent(events()[place]);
      deposit(day, amount);
      break;
    default:
      events().moveLastTo(place);
      break;
    }
    expectAsReadAnew("step " + std::to_string(step));
  }
}

TEST_F(WalkedCashTest, InterestIsThatOfItsDays) {
  for (const Date& day : {Date(2026, 2, 1), Date(2026, 2, 2), Date(2026, 2, 3), Date(2026, 2, 4)})
    user().creditCash(day, day.day(), CASH_EVENT_INTEREST, u"INTEREST");
  deposit(Date(2026, 2, 2), 100.0);
  user().debitCash(Date(2026, 2, 2), 1000.0, CASH_EVENT_DEBIT, u"fee");
  EXPECT_EQ(5.0, user().interestBetween(Date(2026, 2, 2), Date(2026, 2, 3)));
  EXPECT_EQ(10.0, user().interestBetween(Date(2026, 2, 1), Date(2026, 2, 4)));
  events()[1].subElement(u"Date").setValue(u"3/2/2026");
  EXPECT_EQ(5.0, user().interestBetween(Date(2026, 2, 3), Date(2026, 2, 3)));
}

TEST_F(WalkedCashTest, AnEntryThatCannotBeReadIsReadWhenItIsMended) {
  deposit(Date(2026, 2, 1), 10.0);
  deposit(Date(2026, 2, 2), 20.0);
  deposit(Date(2026, 2, 3), 30.0);
  expectAsReadAnew("before");
  events()[0].subElement(u"Date").setValue(u"5/2/2026");
  events()[1].subElement(u"Date").setValue(u"no day");
  EXPECT_THROW(m_kept.read(user().portfolio()), Exception);
  EXPECT_THROW(m_kept.read(user().portfolio()), Exception);
  events()[1].subElement(u"Date").setValue(u"2/2/2026");
  expectAsReadAnew("mended");
  events()[1].subElement(u"Date").setValue(u"no day");
  events()[0].subElement(u"Date").setValue(u"6/2/2026");
  EXPECT_THROW(m_kept.read(user().portfolio()), Exception);
  user().portfolio().cashEvents().remove(events()[1]);
  expectAsReadAnew("removed");
}

} // namespace
} // namespace Tallymoor
