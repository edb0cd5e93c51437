#include "foundation/FaultTranslator.h"
#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(FaultTranslatorTest, CodeAndAddressHaveEightCapitalDigits) {
  EXPECT_EQ(faultText(0xC0000005u, 0x401abc), u"C Exception number 0xC0000005 was thrown from 0x00401ABC");
  EXPECT_EQ(faultText(0, 0), u"C Exception number 0x00000000 was thrown from 0x00000000");
  EXPECT_EQ(faultText(11, 0xFFFFFFFFu), u"C Exception number 0x0000000B was thrown from 0xFFFFFFFF");
}

TEST(FaultTranslatorTest, OfALongAddressTheLowerDigitsAreShown) {
  EXPECT_EQ(faultText(11, static_cast<std::uintptr_t>(0x7f0012345678u)),
            u"C Exception number 0x0000000B was thrown from 0x12345678");
}

TEST(FaultTranslatorTest, IsThrownAsACException) {
  try {
    throwFault(0xC0000005u, 0x10);
  } catch (const Exception& e) {
    EXPECT_EQ(e.description(), u"C Exception : C Exception number 0xC0000005 was thrown from 0x00000010");
  }
}

} // namespace
} // namespace Tallymoor
