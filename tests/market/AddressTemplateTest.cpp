#include "market/AddressTemplate.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

AddressValues someValues() {
  AddressValues values;
  values.code = u"AB&C.AX";
  values.text = u"two words";
  values.key = u"secret/1";
  values.first = Date(2024, 2, 1);
  values.last = Date(2024, 12, 31);
  values.page = 3;
  return values;
}

TEST(AddressTemplate, FillsInAllVariables) {
  const AddressTemplate address(
      u"https://host/{CODE}/{CODE:stem}.{CODE:suffix}?q={TEXT}&from={FROM:yyyy-MM-dd}&to="
      u"{TO:unixtime}&p={PAGE}&k={KEY}");
  EXPECT_EQ(address.fill(someValues()),
            u"https://host/AB%26C.AX/AB%26C.AX?q=two%20words&from=2024-02-01&to=1735603200&p=3&k=secret%2F1");
  EXPECT_TRUE(address.usesKey() && address.usesPage() && address.usesRange());
}

TEST(AddressTemplate, WritesDaysInEachForm) {
  EXPECT_EQ(AddressTemplate(u"{FROM:d MMM yy}|{FROM:days}|{FROM:milliseconds}|{TO:MM/dd/yyyy}")
                .fillPlainly(someValues()),
            u"1 Feb 24|19754|1706745600000|12/31/2024");
}

TEST(AddressTemplate, ShowsNoKey) {
  EXPECT_EQ(AddressTemplate(u"https://host/?k={KEY}&s={CODE}").fillForShow(someValues()),
            u"https://host/?k=(key)&s=AB%26C.AX");
}

TEST(AddressTemplate, SaysWhatItDoesNotUse) {
  const AddressTemplate address(u"https://host/prices.csv");
  EXPECT_FALSE(address.usesKey() || address.usesPage() || address.usesRange());
  EXPECT_EQ(address.fill(someValues()), u"https://host/prices.csv");
}

TEST(AddressTemplate, RefusesWhatItDoesNotKnow) {
  struct Case {
    const char16_t* address;
    const char16_t* cause;
  };
  for (const Case& each :
       {Case{u"a{CODE", u"has a \"{\" without its \"}\""}, Case{u"a}b", u"has a \"}\" without its \"{\""},
        Case{u"{CODE}}", u"has a \"}\" without its \"{\""},
        Case{u"{NAME}", u"has an unknown variable: {NAME}"},
        Case{u"{FROM}", u"has an unknown variable: {FROM}"},
        Case{u"{KEY:x}", u"has an unknown variable: {KEY:x}"}})
    EXPECT_EQ(messageOf([&] { AddressTemplate address(each.address); }),
              String(u"The address ") + each.address + u" " + each.cause);
}

} // namespace
} // namespace Tallymoor
