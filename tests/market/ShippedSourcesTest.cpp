#include "TestPaths.h"
#include "market/PriceSource.h"
#include "market/SourceAnswer.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

// The shipped documents read answers of the published shapes, with codes and numbers made up.

namespace Tallymoor {
namespace {

class ShippedSource : public testing::Test {
protected:
  static PriceSource source(const char16_t* name) {
    return PriceSource::fromFile(String(TALLYMOOR_SHIPPED_SOURCES) + u"/" + name + u".xml");
  }

  static String historyOf(const PriceSource& source, const char* answer) {
    const AnsweredHistory history = readHistory(answer, source.history()->format);
    String text = history.currency;
    for (const auto& [day, value] : history.prices)
      text += u" " + day.toString(DATE_DISPLAY_DMY) + u"=" + String::fromDouble(value.close, 4) + u"," +
              String::fromDouble(value.high, 2) + u"," + String::fromDouble(value.low, 2) + u"," +
              String::fromLong(value.volume);
    for (const auto& [day, dividend] : history.dividends)
      text += u" dividend " + day.toString(DATE_DISPLAY_DMY) + u"=" + String::fromDouble(dividend, 2);
    for (const auto& [day, split] : history.splits)
      text += u" split " + day.toString(DATE_DISPLAY_DMY) + u"=" + String::fromDouble(split, 2);
    return text;
  }

  static String errorOf(const SourceRequest& request, const char* answer) {
    try {
      readHistory(answer, request.format);
    } catch (const AnswerException& failure) {
      return (failure.fault() == AnswerException::Fault::SourceError ? u"source: " : u"unreadable: ") +
             failure.message();
    }
    return u"(nothing thrown)";
  }

  static String searchOf(const PriceSource& source, const char* answer) {
    String text;
    for (const CodeSearchResult& found : readSearch(answer, source.search()->format))
      text += found.code + u"|" + found.name + u"|" + found.market + u";";
    return text;
  }

  static AddressValues values() {
    AddressValues values;
    values.code = u"QXZ.AX";
    values.text = u"quartz mining";
    values.key = u"K1";
    values.first = Date(2026, 1, 5);
    values.last = Date(2026, 2, 28);
    return values;
  }

  TestProfile m_profile;
};

TEST_F(ShippedSource, AlphaVantageHistoryQuoteAndSearch) {
  const PriceSource alpha = source(u"Alpha Vantage");
  EXPECT_EQ(alpha.history()->address.fill(values()),
            u"https://www.alphavantage.co/query?function=TIME_SERIES_DAILY&symbol=QXZ.AX&outputsize=full&"
            u"datatype=csv&apikey=K1");
  EXPECT_EQ(historyOf(alpha, "timestamp,open,high,low,close,volume\r\n2026-02-27,10.1,10.9,10.0,10.5,1200\r\n"
                             "2026-02-26,9.9,10.2,9.8,10.1,900\r\n"),
            u" 26/2/2026=10.1000,10.20,9.80,900 27/2/2026=10.5000,10.90,10.00,1200");
  EXPECT_EQ(errorOf(*alpha.history(), "{\"Information\": \"25 requests per day\"}"),
            u"source: 25 requests per day");
  EXPECT_EQ(errorOf(*alpha.history(), "{\"Error Message\": \"Invalid API call.\"}"),
            u"source: Invalid API call.");
  const auto quote =
      readPrice("{\"Global Quote\":{\"01. symbol\":\"QXZ\",\"05. price\":\"10.5000\",\"07. latest "
                "trading day\":\"2026-02-27\"}}",
                alpha.currentPrice()->format);
  ASSERT_TRUE(quote.has_value());
  EXPECT_EQ(quote->price, 10.5);
  EXPECT_EQ(quote->day, Date(2026, 2, 27));
  EXPECT_EQ(searchOf(alpha, "{\"bestMatches\":[{\"1. symbol\":\"QXZ.AX\",\"2. name\":\"Quartz\",\"4. "
                            "region\":\"Australia\",\"8. currency\":\"AUD\"}]}"),
            u"QXZ.AX|Quartz|Australia;");
}

TEST_F(ShippedSource, EodhdHistoryAndSearch) {
  const PriceSource eodhd = source(u"EODHD");
  EXPECT_EQ(eodhd.history()->address.fill(values()),
            u"https://eodhd.com/api/eod/QXZ.AX?from=2026-01-05&to=2026-02-28&period=d&fmt=json&api_token=K1");
  EXPECT_EQ(historyOf(eodhd,
                      "[{\"date\":\"2026-02-26\",\"open\":9.9,\"high\":10.2,\"low\":9.8,\"close\":10.1,"
                      "\"adjusted_close\":5.05,\"volume\":900}]"),
            u" 26/2/2026=10.1000,10.20,9.80,900");
  EXPECT_EQ(historyOf(eodhd, "[]"), u"");
  EXPECT_EQ(
      searchOf(eodhd, "[{\"Code\":\"QXZ\",\"Exchange\":\"AU\",\"Name\":\"Quartz\",\"Currency\":\"AUD\"}]"),
      u"QXZ|Quartz|AU;");
}

TEST_F(ShippedSource, TwelveDataHistoryAndItsErrors) {
  const PriceSource twelve = source(u"Twelve Data");
  EXPECT_EQ(historyOf(twelve, "{\"meta\":{\"symbol\":\"QXZ\",\"currency\":\"USD\"},\"values\":[{\"datetime\":"
                              "\"2026-02-27\",\"open\":\"10.1\",\"high\":\"10.9\",\"low\":\"10.0\",\"close\":"
                              "\"10.50000\",\"volume\":\"1200\"}],\"status\":\"ok\"}"),
            u"USD 27/2/2026=10.5000,10.90,10.00,1200");
  EXPECT_EQ(
      errorOf(*twelve.history(), "{\"code\":400,\"message\":\"symbol not found\",\"status\":\"error\"}"),
      u"source: symbol not found");
}

TEST_F(ShippedSource, TiingoHistoryWithADividendAndASplit) {
  const PriceSource tiingo = source(u"Tiingo");
  EXPECT_EQ(
      historyOf(tiingo, "date,close,high,low,open,volume,adjClose,adjHigh,adjLow,adjOpen,adjVolume,divCash,"
                        "splitFactor\n2026-02-26,20.2,20.4,19.6,19.8,900,10.1,10.2,9.8,9.9,1800,0.25,1.0\n"
                        "2026-02-27,10.5,10.9,10.0,10.1,1200,10.5,10.9,10.0,10.1,1200,0.0,2.0\n"),
      u" 26/2/2026=20.2000,20.40,19.60,900 27/2/2026=10.5000,10.90,10.00,1200 dividend 26/2/2026=0.25 split "
      u"27/2/2026=2.00");
  EXPECT_EQ(errorOf(*tiingo.history(), "{\"detail\":\"Invalid token.\"}"), u"source: Invalid token.");
}

TEST_F(ShippedSource, AsxQuote) {
  const PriceSource asx = source(u"ASX");
  EXPECT_EQ(asx.currentPrice()->address.fill(values()),
            u"https://asx.api.markitdigital.com/asx-research/1.0/companies/QXZ/header");
  const auto quote =
      readPrice("{\"data\":{\"symbol\":\"QXZ\",\"displayName\":\"QUARTZ LTD\",\"priceLast\":41.51}}",
                asx.currentPrice()->format);
  ASSERT_TRUE(quote.has_value());
  EXPECT_EQ(quote->price, 41.51);
  EXPECT_EQ(quote->currency, u"AUD");
  EXPECT_FALSE(asx.needsKey());
}

TEST_F(ShippedSource, CentralBanks) {
  EXPECT_EQ(historyOf(source(u"Bank of Canada"),
                      "{\"terms\":{\"url\":\"x\"},\"observations\":[{\"d\":\"2026-02-26\","
                      "\"FXUSDCAD\":{\"v\":\"1.3712\"}},{\"d\":\"2026-02-27\"}]}"),
            u"CAD 26/2/2026=1.3712,0.00,0.00,0");
  EXPECT_EQ(
      historyOf(source(u"European Central Bank"),
                "KEY,FREQ,CURRENCY,TIME_PERIOD,OBS_VALUE,OBS_STATUS\nEXR.D.USD,D,USD,2026-02-26,1.0812,A\n"),
      u"USD 26/2/2026=1.0812,0.00,0.00,0");
}

} // namespace
} // namespace Tallymoor
