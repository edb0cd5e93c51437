#include "xml/PriceCache.h"
#include "XmlTestTools.h"
#include "foundation/Constants.h"

namespace Tallymoor {
namespace {

TEST(PriceCacheTest, AFileIsWrittenExactly) {
  XMLShareValues values;
  values.subElement(u"Code").setValue(u"A&B.AX");
  XMLElement& row = values.addSubElement(XMLShareValue::create(), u"Values");
  row.subElement(u"Date").setValue(Date(2006, 3, 3).toString(DATE_DISPLAY_DMY));
  row.subElement(u"Close").setValue(String::fromDouble(1.23456, 4));
  row.subElement(u"High").setValue(String::fromDouble(1.3, 4));
  row.subElement(u"Low").setValue(String::fromDouble(0.0, 4));
  row.subElement(u"Volume").setValue(String::fromLong(1200));
  std::ostringstream stream;
  values.encodeWithDoctype(stream, SHARE_CACHE_DTD);
  EXPECT_EQ(
      stream.str(),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE ShareValues SYSTEM \"Tallymoor Share "
      "Cache.dtd\">\n"
      "<ShareValues><String>A&amp;B.AX</String><ShareValue><Date>3/3/2006</Date><Constant>1.2346</Constant>"
      "<Constant>1.3000</Constant><Constant>0.0000</Constant><Constant>1200</Constant></ShareValue>"
      "</ShareValues>");
}

TEST(PriceCacheTest, RowsAreReadAsNumbers) {
  XMLShareValues values;
  values.decode(
      "<ShareValues><String>ABC.AX</String><ShareValue><Date>3/3/2006</Date><Constant>1.2346</Constant>"
      "<Constant>1.3</Constant><Constant/><Constant>3000000000</Constant></ShareValue><ShareValue>"
      "<Date>4/3/2006</Date></ShareValue></ShareValues>");
  ASSERT_EQ(values.numSubElements(u"Values"), 2u);
  const auto& first = dynamic_cast<const XMLShareValue&>(values.subElement(u"Values", 0));
  EXPECT_EQ(first.date(), Date(2006, 3, 3));
  EXPECT_EQ(first.close(), 1.2346);
  EXPECT_EQ(first.high(), 1.3);
  EXPECT_EQ(first.low(), 0.0);
  EXPECT_EQ(first.volume(), 2147483647);
  const auto& second = dynamic_cast<const XMLShareValue&>(values.subElement(u"Values", 1));
  EXPECT_EQ(second.close(), 0.0);
  EXPECT_EQ(second.volume(), 0);
  EXPECT_EQ(textValue(values, u"Code"), String(u"ABC.AX"));
}

TEST(PriceCacheTest, OnlyTheWordTrueMarksACodeAsBad) {
  const auto isBad = [](const char* text) {
    XMLShareValues values;
    values.decode(text);
    return values.isBad();
  };
  EXPECT_TRUE(isBad("<ShareValues IsBad=\"true\"><String>A</String></ShareValues>"));
  EXPECT_FALSE(isBad("<ShareValues IsBad=\"false\"><String>A</String></ShareValues>"));
  EXPECT_FALSE(isBad("<ShareValues IsBad=\"True\"><String>A</String></ShareValues>"));
  EXPECT_FALSE(isBad("<ShareValues><String>A</String></ShareValues>"));
}

TEST(PriceCacheTest, ABadCodeIsWrittenWithItsAttribute) {
  XMLShareValues values;
  values.subElement(u"Code").setValue(u"A");
  EXPECT_EQ(encoded(values), "<ShareValues><String>A</String></ShareValues>");
  values.setAttribute(u"IsBad", u"true");
  EXPECT_EQ(encoded(values), "<ShareValues IsBad=\"true\"><String>A</String></ShareValues>");
}

TEST(PriceCacheTest, RowsComeFromAPool) {
  const std::size_t inUse = XMLShareValue::pool().numInUse();
  {
    XMLShareValues values;
    values.decode("<ShareValues><String>A</String><ShareValue/><ShareValue/></ShareValues>");
    EXPECT_EQ(XMLShareValue::pool().numInUse(), inUse + 2);
  }
  EXPECT_EQ(XMLShareValue::pool().numInUse(), inUse);
}

TEST(PriceCacheTest, AMalformedFileFailsInTheFrameworksWords) {
  XMLShareValues values;
  EXPECT_TRUE(
      failureOf([&] {
        values.decode("<ShareValues><String>A</String>");
      }).startsWith(u"XMLElement::decode, parse fatal error in ShareValues : Parse problem at line 1 "));
}

} // namespace
} // namespace Tallymoor
