#include "widgets/NumberField.h"
#include "support/windows/WindowTest.h"
#include <clocale>

namespace Tallymoor {
namespace {

class NumberFieldTest : public WindowTest {
protected:
  NumberField& makeField(int decimals) {
    auto* field = new NumberField(mainWindow().contentFrame(), decimals);
    field->create();
    return *field;
  }
  double valueOf(const std::string& typed) {
    NumberField& field = makeField(2);
    type(field, typed);
    return field.value();
  }
};

TEST_F(NumberFieldTest, BeginsAtZeroAtTheRight) {
  NumberField& field = makeField(2);
  EXPECT_EQ(String(u"0.00"), field.text());
  EXPECT_EQ(0.0, field.value());
  EXPECT_EQ(static_cast<FXuint>(JUSTIFY_RIGHT), field.getJustify() & JUSTIFY_RIGHT);
}

TEST_F(NumberFieldTest, ShowsItsDecimals) {
  NumberField& price = makeField(4);
  price.setValue(12.34567);
  EXPECT_EQ(String(u"12.3457"), price.text());
  EXPECT_EQ(12.3457, price.value());
  NumberField& rate = makeField(6);
  rate.setValue(0.1234567);
  EXPECT_EQ(String(u"0.123457"), rate.text());
  NumberField& amount = makeField(2);
  amount.setValue(-1234567.5);
  EXPECT_EQ(String(u"-1234567.50"), amount.text());
}

TEST_F(NumberFieldTest, ReadsTypedNumbers) {
  EXPECT_EQ(1234.5, valueOf("1,234.50"));
  EXPECT_EQ(12.5, valueOf("12.5 "));
  EXPECT_EQ(12.5, valueOf(" 12.5"));
  EXPECT_EQ(1234.5, valueOf("$1,234.50"));
  EXPECT_EQ(-3.25, valueOf("-3.25"));
  EXPECT_EQ(0.00001, valueOf("0.00001"));
  EXPECT_EQ(0.5, valueOf(".5"));
  EXPECT_EQ(0.0, valueOf(""));
  EXPECT_EQ(0.0, valueOf("none"));
}

TEST_F(NumberFieldTest, ADecimalCommaIsReadWhereItIsUsed) {
  EXPECT_EQ(125.0, valueOf("12,5"));
  profile().setLocale("de_DE");
  EXPECT_EQ(12.5, valueOf("12,5"));
  EXPECT_EQ(12.5, valueOf("12.5"));
  EXPECT_EQ(1234.5, valueOf("1,234.50"));
}

TEST_F(NumberFieldTest, ReadsItsOwnTextInEveryLocale) {
  profile().setLocale("de_DE");
  NumberField& field = makeField(4);
  field.setValue(1234.5678);
  EXPECT_EQ(String(u"1234.5678"), field.text());
  EXPECT_EQ(1234.5678, field.value());
}

TEST_F(NumberFieldTest, TheProcessesLocaleChangesNothing) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "C.UTF-8"})
    if (std::setlocale(LC_NUMERIC, name))
      break;
  NumberField& field = makeField(2);
  field.setValue(2.5);
  EXPECT_EQ(String(u"2.50"), field.text());
  EXPECT_EQ(2.5, field.value());
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST_F(NumberFieldTest, AReadOnlyFieldTakesNoTyping) {
  NumberField& field = makeField(2);
  field.setValue(7.0);
  field.makeReadOnly();
  EXPECT_FALSE(field.canFocus());
  EXPECT_THROW(type(field, "8"), std::runtime_error);
  FXEvent event{};
  event.code = '8';
  event.text = "8";
  field.handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event);
  EXPECT_EQ(7.0, field.value());
}

} // namespace
} // namespace Tallymoor
