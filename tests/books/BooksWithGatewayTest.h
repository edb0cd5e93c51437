#pragma once
#include "books/PortfolioTest.h"
#include "foundation/FileReplacement.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"

namespace Tallymoor {

/// A portfolio with a real gateway, which is offline at first, so that prices come only from the cache as set
/// by the test.
class BooksWithGatewayTest : public PortfolioTest {
protected:
  BooksWithGatewayTest() {
    TallymoorInternet::Instance().goOffline();
    open(gatewayPrices());
  }
  ~BooksWithGatewayTest() override { m_user.reset(); }

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }

  void setPrice(const String& code, const Date& day, double close) override {
    gateway().setCachedPrice(code, day, close);
  }

  MarketFixture m_market;
  GatewayScope m_gateway;
};

} // namespace Tallymoor
