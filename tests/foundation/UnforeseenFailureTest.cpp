#include "foundation/UnforeseenFailure.h"
#include "support/MessageOf.h"
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

namespace Tallymoor {
namespace {

const char16_t* const ADVICE = u"\nWhat you did may not have come to its end. Please look it over, save your "
                               u"records, and start Tallymoor\n"
                               u"again if something looks wrong.";

String descriptionOf(const std::function<void()>& work) {
  try {
    withUnforeseenFailures(work);
  } catch (const Exception& exception) {
    return exception.description();
  }
  return u"nothing was thrown";
}

TEST(UnforeseenFailureTest, ExceptionsOfOtherLibrariesAreDescribed) {
  EXPECT_EQ(descriptionOf([] { throw std::bad_alloc(); }),
            String(u"Unforeseen failure : there is not enough memory.") + ADVICE);
  EXPECT_EQ(descriptionOf([] { throw std::out_of_range("no such row"); }),
            String(u"Unforeseen failure : no such row.") + ADVICE);
  EXPECT_EQ(descriptionOf([] { throw 7; }), String(u"Unforeseen failure : of an unknown kind.") + ADVICE);
  const String missing = descriptionOf([] { (void)std::filesystem::file_size("/nowhere/at all"); });
  EXPECT_NE(missing.find(u"/nowhere/at all"), String::npos) << missing.toUTF8();
  EXPECT_NE(missing.find(u"No such file"), String::npos) << missing.toUTF8();
}

TEST(UnforeseenFailureTest, TheProgramsOwnExceptionsPassUnchanged) {
  EXPECT_EQ(descriptionOf([] { throw HTTPException(u"no network", 404); }), u"HTTPException : no network");
  EXPECT_EQ(descriptionOf([] {}), u"nothing was thrown");
}

} // namespace
} // namespace Tallymoor
