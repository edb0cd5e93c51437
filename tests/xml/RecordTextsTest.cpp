#include "xml/RecordTexts.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(RecordTextsTest, ANumberWithMoreThanTwoDecimalsThatCountHasAFractionOfHundredths) {
  for (const char16_t* number : {u"33.333333", u"0.001", u"-1.005", u"1e-3", u"12.3456"})
    EXPECT_TRUE(hasFractionOfHundredths(number)) << String(number).toUTF8();
  for (const char16_t* number : {u"", u"0", u"100", u"100.5", u"100.55", u"12.", u".25", u"-3.25", u"12.3400",
                                 u"12.34000001", u"abc", u"12345678901234567890.12"})
    EXPECT_FALSE(hasFractionOfHundredths(number)) << String(number).toUTF8();
}

} // namespace
} // namespace Tallymoor
