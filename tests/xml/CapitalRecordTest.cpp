#include "xml/CapitalRecord.h"
#include "XmlTestTools.h"
#include "foundation/Constants.h"
#include "xml/PriceCache.h"
#include <thread>

namespace Tallymoor {
namespace {

/// Allocates all free elements, so that the next request needs a new block. Frees them at the end.
template <class Element>
class EmptiedPool {
public:
  EmptiedPool() {
    while (Element::pool().numFree() > 0)
      m_taken.push_back(Element::create());
  }
  ~EmptiedPool() {
    for (XMLElement* element : m_taken)
      element->destroy();
  }

private:
  std::vector<XMLElement*> m_taken;
};

template <class Element>
class PoolTest : public ::testing::Test {};
using Pooled = ::testing::Types<XMLDayCap, XMLShareVal, XMLShareValue>;
TYPED_TEST_SUITE(PoolTest, Pooled);

TYPED_TEST(PoolTest, The101stRequestAllocatesASecondBlock) {
  EmptiedPool<TypeParam> emptied;
  const std::size_t blocks = TypeParam::pool().numBlocks();
  std::vector<XMLElement*> taken;
  for (int i = 0; i < 100; ++i)
    taken.push_back(TypeParam::create());
  EXPECT_EQ(TypeParam::pool().numBlocks(), blocks + 1);
  EXPECT_EQ(TypeParam::pool().numFree(), 0u);
  taken.push_back(TypeParam::create());
  EXPECT_EQ(TypeParam::pool().numBlocks(), blocks + 2);
  EXPECT_EQ(TypeParam::pool().numFree(), 99u);
  const std::size_t inUse = TypeParam::pool().numInUse();
  for (XMLElement* element : taken)
    element->destroy();
  EXPECT_EQ(TypeParam::pool().numInUse(), inUse - 101);
  EXPECT_EQ(TypeParam::pool().numBlocks(), blocks + 2);
}

TYPED_TEST(PoolTest, AReleasedElementIsReusedFirst) {
  XMLElement* first = TypeParam::create();
  XMLElement* second = TypeParam::create();
  first->destroy();
  second->destroy();
  EXPECT_EQ(TypeParam::create(), second);
  EXPECT_EQ(TypeParam::create(), first);
  first->destroy();
  second->destroy();
}

TYPED_TEST(PoolTest, ACopyIsLeftAlone) {
  const std::size_t free = TypeParam::pool().numFree();
  TypeParam copy;
  copy.destroy();
  EXPECT_EQ(TypeParam::pool().numFree(), free);
}

TYPED_TEST(PoolTest, ReleasingTwiceCountsOnce) {
  XMLElement* element = TypeParam::create();
  element->destroy();
  const std::size_t free = TypeParam::pool().numFree();
  element->destroy();
  EXPECT_EQ(TypeParam::pool().numFree(), free);
}

TYPED_TEST(PoolTest, IsThreadSafe) {
  const std::size_t inUse = TypeParam::pool().numInUse();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([] {
      for (int round = 0; round < 50; ++round) {
        std::vector<XMLElement*> taken;
        for (int n = 0; n < 20; ++n)
          taken.push_back(TypeParam::create());
        for (XMLElement* element : taken)
          element->destroy();
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(TypeParam::pool().numInUse(), inUse);
}

TEST(CapitalRecordTest, AReleasedDayIsEmptyWhenTakenAgain) {
  const std::size_t shareVals = XMLShareVal::pool().numInUse();
  XMLSharePortfolioCapitalRecord record;
  XMLElement& day = record.addSubElement(XMLDayCap::create(), u"DayCaps");
  day.subElement(u"Date").setValue(u"3/3/2006");
  day.subElement(u"CashTotal").setValue(u"12.00");
  day.addSubElement(new XMLConstant, u"CashInjected").setValue(u"1.00");
  day.addSubElement(XMLShareVal::create(), u"ShareVals").subElement(u"Code").setValue(u"ABC.AX");
  day.setAttribute(u"x", u"y");
  EXPECT_EQ(XMLShareVal::pool().numInUse(), shareVals + 1);
  record.removeSubElement(u"DayCaps", 0);
  EXPECT_EQ(XMLShareVal::pool().numInUse(), shareVals);
  XMLElement* again = XMLDayCap::create();
  EXPECT_EQ(again, &day);
  EXPECT_EQ(encoded(*again), "<DayCap><Date/><Constant/></DayCap>");
  EXPECT_EQ(again->parent(), nullptr);
  EXPECT_FALSE(again->hasAttribute(u"x"));
  EXPECT_EQ(again->numSubElements(u"ShareVals"), 0u);
  EXPECT_EQ(again->numSubElements(u"CashInjected"), 0u);
  again->decode("<DayCap><Date>4/3/2006</Date></DayCap>"); // Must not inherit state of its previous use.
  EXPECT_EQ(textValue(*again, u"Date"), String(u"4/3/2006"));
  again->destroy();
}

TEST(CapitalRecordTest, ADayWithoutMovementHasThreeKindsOfChild) {
  XMLSharePortfolioCapitalRecord record;
  record.subElement(u"Name").setValue(u"A&B");
  XMLElement& day = record.addSubElement(XMLDayCap::create(), u"DayCaps");
  day.subElement(u"Date").setValue(u"3/3/2006");
  day.subElement(u"CashTotal").setValue(u"1264.00");
  XMLElement& share = day.addSubElement(XMLShareVal::create(), u"ShareVals");
  share.subElement(u"Code").setValue(u"A&C.AX");
  share.subElement(u"Number").setValue(u"100.00");
  share.subElement(u"Price").setValue(u"12.34");
  std::ostringstream stream;
  record.encodeWithDoctype(stream, RECORDS_DTD);
  EXPECT_EQ(
      stream.str(),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE SharePortfolioCapitalRecord SYSTEM \"Tallymoor "
      "Records.dtd\">\n<SharePortfolioCapitalRecord><String>A&amp;B</String><DayCap><Date>3/3/2006</Date>"
      "<Constant>1264.00</Constant><ShareVal><String>A&amp;C.AX</String><Constant>100.00</Constant><Constant>"
      "12.34</Constant></ShareVal></DayCap></SharePortfolioCapitalRecord>");
  day.addSubElement(new XMLConstant, u"CashInjected").setValue(u"-5.00");
  const std::string text = encoded(record);
  EXPECT_NE(text.find("</ShareVal><Constant>-5.00</Constant></DayCap>"), std::string::npos);
  XMLSharePortfolioCapitalRecord again;
  again.decode(text.c_str());
  EXPECT_EQ(encoded(again), text);
  EXPECT_EQ(doubleValue(again.subElement(u"DayCaps"), u"CashInjected"), -5.0);
  EXPECT_EQ(doubleValue(again.subElement(u"DayCaps").subElement(u"ShareVals"), u"Price"), 12.34);
}

TEST(CapitalRecordTest, AMovementOnADayWithoutSharesIsNotTakenForTheCash) {
  XMLSharePortfolioCapitalRecord record;
  record.decode(
      "<SharePortfolioCapitalRecord><String>T</String><DayCap><Date>3/3/2006</Date><Constant>7.00</Constant>"
      "<Constant>5.00</Constant></DayCap></SharePortfolioCapitalRecord>");
  const XMLElement& day = record.subElement(u"DayCaps");
  EXPECT_EQ(doubleValue(day, u"CashTotal"), 7.0);
  EXPECT_EQ(doubleValue(day, u"CashInjected"), 5.0);
}

TEST(CapitalRecordTest, CopiesComeFromThePools) {
  const std::size_t days = XMLDayCap::pool().numInUse();
  const std::size_t shares = XMLShareVal::pool().numInUse();
  {
    XMLSharePortfolioCapitalRecord record;
    record.addSubElement(XMLDayCap::create(), u"DayCaps").addSubElement(XMLShareVal::create(), u"ShareVals");
    XMLSharePortfolioCapitalRecord copy(record);
    EXPECT_EQ(XMLDayCap::pool().numInUse(), days + 2);
    EXPECT_EQ(XMLShareVal::pool().numInUse(), shares + 2);
    EXPECT_EQ(encoded(copy), encoded(record));
  }
  EXPECT_EQ(XMLDayCap::pool().numInUse(), days);
  EXPECT_EQ(XMLShareVal::pool().numInUse(), shares);
}

TEST(CapitalRecordTest, AFailedReadReleasesAllElementsWithTheRoot) {
  const std::size_t days = XMLDayCap::pool().numInUse();
  const std::size_t shares = XMLShareVal::pool().numInUse();
  {
    XMLSharePortfolioCapitalRecord record;
    failureOf([&] {
      record.decode(
          "<SharePortfolioCapitalRecord><String>T</String><DayCap><Date/><Constant/><ShareVal><String>A"
          "</String><Wrong/></ShareVal></DayCap></SharePortfolioCapitalRecord>");
    });
    EXPECT_EQ(XMLDayCap::pool().numInUse(), days + 1);
  }
  EXPECT_EQ(XMLDayCap::pool().numInUse(), days);
  EXPECT_EQ(XMLShareVal::pool().numInUse(), shares);
}

TEST(CapitalRecordTest, TheFileIsNamedByThePortfolio) {
  EXPECT_EQ(capitalRecordFileName(u"Trading"), String(u"TradingCapRecord.xml"));
}

} // namespace
} // namespace Tallymoor
