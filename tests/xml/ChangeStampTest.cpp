// A value computed from an element is valid until the element's stamp grows.
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class ChangeStampTest : public ::testing::Test {
protected:
  ChangeStampTest() {
    m_first.setCode(u"ABC.AX");
    m_second.setCode(u"XYZ.AX");
  }
  /// Checks that a change below the first stock changes its stamp and no other.
  template <class Change>
  void expectTold(const char* what, Change change) {
    const std::uint64_t records = m_records.changeStamp();
    const std::uint64_t portfolio = m_portfolio.changeStamp();
    const std::uint64_t first = m_first.changeStamp();
    const std::uint64_t second = m_second.changeStamp();
    change();
    EXPECT_LT(records, m_records.changeStamp()) << what;
    EXPECT_LT(portfolio, m_portfolio.changeStamp()) << what;
    EXPECT_LT(first, m_first.changeStamp()) << what;
    EXPECT_EQ(second, m_second.changeStamp()) << what;
  }

  XMLPortfolios m_records;
  XMLSharePortfolio& m_portfolio = m_records.portfolios().add();
  XMLHeldShare& m_first = m_portfolio.heldShares().add();
  XMLHeldShare& m_second = m_portfolio.heldShares().add();
};

TEST_F(ChangeStampTest, GrowsInTheElementAndItsAncestors) {
  XMLBuyEvent* parcel = nullptr;
  expectTold("a parcel comes", [&] { parcel = &m_first.parcels().add(); });
  expectTold("a value", [&] { parcel->setPrice(12.0); });
  expectTold("a value by its name", [&] { parcel->subElement(u"NumHeld").setValue(u"100.00"); });
  expectTold("an attribute", [&] { parcel->setAttribute(u"Kept", u"yes"); });
  expectTold("the attribute goes", [&] { parcel->removeAttribute(u"Kept"); });
  expectTold("a second parcel", [&] { m_first.addSubElement(new XMLBuyEvent, u"BuyEvents"); });
  expectTold("another order", [&] { m_first.parcels().moveLastTo(0); });
  expectTold("a copy", [&] { m_first.parcels()[0] = m_first.parcels()[1]; });
  expectTold("a parcel goes", [&] { m_first.parcels().remove(m_first.parcels().back()); });
  expectTold("another goes", [&] { m_first.removeSubElement(u"BuyEvents", 0); });
  expectTold("none is left", [&] { m_first.removeSubElements(u"BuyEvents"); });
  expectTold("it is emptied", [&] { m_first.reset(); });
}

TEST_F(ChangeStampTest, GrowsInElementsReadAndTheirAncestors) {
  expectTold("it is read", [&] {
    m_first.decode(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><HeldShare><String>ABC.AX</String><BuyEvent>"
        "<Date>3/3/2006</Date><Constant>5.00</Constant><Constant>2.0000</Constant>"
        "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>");
  });
  EXPECT_EQ(Date(2006, 3, 3), m_first.parcels()[0].bought());
}

TEST_F(ChangeStampTest, DiffersFromAnEarlierElementAtTheSameAddress) {
  std::uint64_t last = 0;
  for (int i = 0; i < 3; ++i) { // Allocators return the same address again.
    const XMLBuyEvent& parcel = m_first.parcels().add();
    EXPECT_LT(last, parcel.changeStamp());
    last = parcel.changeStamp();
    m_first.parcels().remove(parcel);
  }
}

TEST_F(ChangeStampTest, ADayFollowsItsText) {
  XMLDate date;
  date.setValue(u"3/3/2006");
  EXPECT_EQ(Date(2006, 3, 3), date.date());
  date.setValue(u"4/3/2006");
  EXPECT_EQ(Date(2006, 3, 4), date.date());
  date.decode("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Date>5/3/2006</Date>");
  EXPECT_EQ(Date(date.value(), DATE_DISPLAY_DMY), date.date()) << "it was not emptied before";
  date.reset();
  date.decode("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Date>5/3/2006</Date>");
  EXPECT_EQ(Date(2006, 3, 5), date.date());
  XMLDate other;
  other.setValue(u"6/3/2006");
  EXPECT_EQ(Date(2006, 3, 6), other.date());
  other = date;
  EXPECT_EQ(Date(2006, 3, 5), other.date());
  date.reset();
  EXPECT_THROW(date.date(), Exception);
}

} // namespace
} // namespace Tallymoor
