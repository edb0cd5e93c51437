#include "foundation/ShortDatePicture.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(ShortDatePictureTest, PicturesOfLocales) {
  const std::pair<const char*, const char16_t*> rows[] = {
      {"en_AU", u"dd/MM/yyyy"}, {"en_GB", u"dd/MM/yyyy"}, {"en_US", u"M/d/yyyy"}, {"de_DE", u"d.M.yyyy"},
      {"ja_JP", u"yyyy/M/d"},   {"sv_SE", u"yyyy-MM-dd"}, {"th_TH", u"d/M/yyyy"},
  };
  for (const auto& [locale, picture] : rows)
    EXPECT_EQ(ShortDatePicture::ofLocale(locale).text(), picture) << locale;
}

TEST(ShortDatePictureTest, EveryLocaleReadsWhatItWrites) {
  for (const char* locale : {"en_AU", "en_US", "de_DE", "ja_JP", "ar_EG", "fa_IR", "th_TH", "bg_BG", "hr_HR",
                             "ko_KR", "he_IL", "zh_TW", "lv_LV", "pt_PT", "my_MM"}) {
    const ShortDatePicture picture = ShortDatePicture::ofLocale(locale);
    for (const Date& date : {Date(2026, 3, 3), Date(1999, 12, 31), Date(2024, 2, 29)}) {
      const String text = picture.format(date);
      Date read(2000, 1, 1);
      EXPECT_TRUE(picture.parse(text, read)) << locale << " " << text.toUTF8();
      EXPECT_EQ(read, date) << locale;
      for (const char16_t unit : text)
        EXPECT_FALSE(unit == 0x200F || unit == 0x200E || (unit >= 0x660 && unit <= 0x6F9)) << locale;
    }
  }
}

TEST(ShortDatePictureTest, WritesByThePicture) {
  const Date date(2006, 3, 5);
  EXPECT_EQ(ShortDatePicture(u"d/M/yy").format(date), u"5/3/06");
  EXPECT_EQ(ShortDatePicture(u"dd.MM.yyyy").format(date), u"05.03.2006");
  EXPECT_EQ(ShortDatePicture(u"yyyy-MM-dd").format(Date(33, 12, 5)), u"0033-12-05");
  EXPECT_EQ(ShortDatePicture(u"M/d/yyyy.").format(Date(2006, 11, 25)), u"11/25/2006.");
}

struct ParseRow {
  const char16_t* picture;
  const char16_t* text;
  bool valid;
};

TEST(ShortDatePictureTest, OnlyTheExactFormParses) {
  const ParseRow rows[] = {
      {u"dd/MM/yyyy", u"05/03/2006", true},
      {u"dd/MM/yyyy", u"5/3/2006", false},
      {u"dd/MM/yyyy", u" 05/03/2006", false},
      {u"dd/MM/yyyy", u"05/03/2006 ", false},
      {u"dd/MM/yyyy", u"05-03-2006", false},
      {u"dd/MM/yyyy", u"05/03/06", false},
      {u"dd/MM/yyyy", u"", false},
      {u"dd/MM/yyyy", u"05/03", false},
      {u"dd/MM/yyyy", u"5/03/2006", false},
      {u"d/M/yyyy", u"5/3/2006", true},
      {u"d/M/yyyy", u"05/3/2006", false},
      {u"d/MM/yy", u"5/03/06", true},
      {u"yyyy/M/d", u"2006/3/5", true},
      {u"M/d/yyyy", u"3/5/2006", true},
      {u"M/d/yyyy", u"abc", false},
      {u"d.M.yyyy", u"5.3.2006", true},
  };
  for (const ParseRow& row : rows) {
    Date date(1990, 1, 1);
    EXPECT_EQ(ShortDatePicture(row.picture).parse(row.text, date), row.valid) << String(row.text).toUTF8();
    EXPECT_EQ(date, row.valid ? Date(2006, 3, 5) : Date(1990, 1, 1)) << String(row.text).toUTF8();
  }
}

TEST(ShortDatePictureTest, ImpossibleDaysAreRefused) {
  Date date(1990, 1, 1);
  for (const char16_t* text :
       {u"31/02/2006", u"29/02/2023", u"00/03/2006", u"01/13/2006", u"01/00/2006", u"01/01/0000"})
    EXPECT_FALSE(ShortDatePicture(u"dd/MM/yyyy").parse(text, date)) << String(text).toUTF8();
  EXPECT_TRUE(ShortDatePicture(u"dd/MM/yyyy").parse(u"29/02/2024", date));
}

TEST(ShortDatePictureTest, ShortYearsFollowTheCenturyRule) {
  Date date;
  ASSERT_TRUE(ShortDatePicture(u"d/MM/yy").parse(u"5/03/69", date));
  EXPECT_EQ(date, Date(2069, 3, 5));
  ASSERT_TRUE(ShortDatePicture(u"d/MM/yy").parse(u"5/03/70", date));
  EXPECT_EQ(date, Date(1970, 3, 5));
}

} // namespace
} // namespace Tallymoor
