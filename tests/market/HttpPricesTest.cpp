#include "market/HttpPrices.h"
#include "market/CurlHTTPClient.h"
#include "market/SourceFailure.h"
#include "support/StringPrinting.h"
#include "support/TestHttpServer.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

const String KEY = u"s3cr+t/key";

/// A service that answers in JSON and needs a key, with made-up codes.
class HttpPricesTest : public testing::Test {
protected:
  HttpPricesTest() { m_client->goOnline(); }

  std::string document(const std::string& extra = "") const {
    const std::string host = m_server.url("");
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PriceSource name=\"Service\"><Serves codes=\"*.AX\" "
           "currency=\"AUD\"/>" +
           extra + "<History reader=\"json\"" + m_attributes + "><Address>" + host +
           "/history/{CODE}?from={FROM:yyyy-MM-dd}&amp;to={TO:yyyy-MM-dd}&amp;key={KEY}</Address>"
           "<Header name=\"X-Key\">{KEY}</Header><Column type=\"Date\" at=\"$[*].date\"/>"
           "<Column type=\"Close\" at=\"$[*].close\"/><Error at=\"$.message\"/><Error at=\"$.unknown\" "
           "means=\"wrong code\"/></History></PriceSource>\n";
  }
  HttpPrices prices(const std::string& text, const String& key = KEY) {
    TestProfile::writeFile(m_profile.path("Service.xml"), text);
    return {m_client,
            std::make_shared<const PriceSource>(PriceSource::fromFile(m_profile.path("Service.xml"))), key};
  }
  AnsweredHistory history(const String& key = KEY) {
    return prices(document(), key).history(u"QXZ.AX", m_range, {});
  }
  /// The class of the failure and its words.
  String failure(const TestHttpServer::Response& response) {
    m_server.setFallback([response](const auto&) { return response; });
    try {
      history();
    } catch (const SourceException& exception) {
      return wordsOf(exception.fault()) + u": " + exception.message();
    }
    return u"(nothing thrown)";
  }

  TestProfile m_profile;
  TestHttpServer m_server;
  std::shared_ptr<CurlHTTPClient> m_client = std::make_shared<CurlHTTPClient>(10000, 10000);
  std::string m_attributes;
  const HistoryRange m_range{Date(2026, 1, 5), Date(2026, 2, 28)};
};

TEST_F(HttpPricesTest, AsksByTheDocumentAndReadsTheAnswer) {
  m_server.setFallback([](const auto&) {
    return TestHttpServer::Response{200,
                                    R"([{"date":"2026-02-26","close":10.1},{"date":"2026-02-27","close":10.5},
                                            {"date":"2026-03-01","close":11}])"};
  });
  const AnsweredHistory history = this->history();
  ASSERT_EQ(m_server.requests().size(), 1u);
  EXPECT_EQ(m_server.requests()[0].target,
            "/history/QXZ.AX?from=2026-01-05&to=2026-02-28&key=s3cr%2Bt%2Fkey");
  EXPECT_EQ(m_server.requests()[0].headers.at("x-key"), "s3cr+t/key");
  EXPECT_EQ(history.currency, u"AUD");
  ASSERT_EQ(history.prices.size(), 2u) << "a day after the range is left out";
  EXPECT_EQ(history.prices.at(Date(2026, 2, 27)).close, 10.5);
}

TEST_F(HttpPricesTest, WithoutAKeyNothingIsAsked) {
  EXPECT_THROW(history(String()), SourceException);
  EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(HttpPricesTest, EachStatusHasItsClassAndTheSourcesOwnWords) {
  EXPECT_EQ(failure({401, R"({"message":"bad token"})"}), u"refused: status 401: bad token");
  EXPECT_EQ(failure({403, "<html>no</html>"}), u"refused: status 403");
  EXPECT_EQ(failure({404, "x"}), u"wrong code: status 404");
  EXPECT_EQ(failure({429, "slow down"}), u"resting: status 429");
  EXPECT_EQ(failure({503, ""}), u"network: status 503");
  EXPECT_EQ(failure({200, R"({"message":"25 requests per day"})"}), u"refused: 25 requests per day");
  EXPECT_EQ(failure({200, R"({"unknown":"no such symbol"})"}), u"wrong code: no such symbol");
  EXPECT_TRUE(failure({200, "<html>Are you human?</html>"}).startsWith(u"answer not readable: "));
  EXPECT_TRUE(failure({200, ""}).startsWith(u"answer not readable: "));
  EXPECT_TRUE(failure({200, R"([{"date":"2026-02-26","clo)"}).startsWith(u"answer not readable: "));
  m_server.stop();
  EXPECT_TRUE(failure({200, ""}).startsWith(u"network: "));
}

TEST_F(HttpPricesTest, TheKeyIsInNoMessage) {
  for (const char* words : {"your key s3cr+t/key is used up", "?key=s3cr%2Bt%2Fkey is wrong"})
    for (const int status : {200, 401}) {
      const String message = failure({status, std::string(R"({"message":")") + words + "\"}"});
      EXPECT_TRUE(message.contains(u"(key)")) << message.toUTF8();
      EXPECT_FALSE(message.contains(u"s3cr")) << message.toUTF8();
    }
  const String unreadable = failure({200, R"([{"date":"s3cr+t/key","close":1}])"});
  EXPECT_FALSE(unreadable.contains(u"s3cr")) << unreadable.toUTF8();
}

TEST_F(HttpPricesTest, LongWordsOfASourceAreCutAndNoPartOfTheKeyIsLeft) {
  const std::string before(292, 'x');
  const String message = failure({200, R"({"message":")" + before + R"(s3cr+t/key\nand more"})"});
  EXPECT_EQ(message.size(), String(u"refused: ").size() + 300 + 3);
  EXPECT_FALSE(message.contains(u"s3cr")) << message.toUTF8();
}

TEST_F(HttpPricesTest, ALongRangeIsAskedForInPagesBackToAnEmptyOne) {
  m_attributes = " daysAPage=\"20\"";
  m_server.setFallback([](const TestHttpServer::Request& request) {
    const bool isNewest = request.target.find("to=2026-02-28") != std::string::npos;
    const bool isNext = request.target.find("to=2026-02-08") != std::string::npos;
    return TestHttpServer::Response{200, isNewest ? R"([{"date":"2026-02-26","close":10.1}])"
                                         : isNext ? R"([{"date":"2026-02-05","close":9.1}])"
                                                  : "[]"};
  });
  EXPECT_EQ(history().prices.size(), 2u);
  ASSERT_EQ(m_server.requests().size(), 3u);
  EXPECT_NE(m_server.requests()[0].target.find("from=2026-02-09&to=2026-02-28"), std::string::npos);
  EXPECT_NE(m_server.requests()[2].target.find("from=2026-01-05&to=2026-01-19"), std::string::npos);
}

TEST_F(HttpPricesTest, TheLastCloseStandsForACurrentPriceThatTheSourceDoesNotOffer) {
  m_server.setFallback([](const auto&) {
    return TestHttpServer::Response{
        200, R"([{"date":"2026-03-02","close":10.5},{"date":"2026-02-27","close":9}])"};
  });
  const auto price = prices(document()).currentPrice(u"QXZ.AX", {});
  ASSERT_TRUE(price);
  EXPECT_EQ(price->price, 10.5);
  EXPECT_EQ(price->day, Date(2026, 3, 2));
  EXPECT_EQ(price->currency, u"AUD");
}

TEST_F(HttpPricesTest, AKeyIsNotSentWithoutEncryptionNorToAServerThatACodeNames) {
  const auto refusal = [&](std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
      text.replace(at, from.size(), to);
    try {
      prices(text);
    } catch (const Exception& failure) {
      return failure.message();
    }
    return String(u"(nothing thrown)");
  };
  EXPECT_TRUE(refusal(document(), m_server.url(""), "http://prices.example")
                  .contains(u"the key would be sent to http://prices.example without encryption"));
  EXPECT_EQ(refusal(document(), m_server.url(""), "https://prices.example"), u"(nothing thrown)");
  EXPECT_TRUE(refusal(document(), m_server.url(""), "https://{CODE}.example")
                  .contains(u"does not begin with a server"));
}

} // namespace
} // namespace Tallymoor
