#pragma once
#include "books/MemoryPrices.h"
#include "books/PortfolioTest.h"

namespace Tallymoor {

/// A portfolio whose prices are those that the test sets in memory: no gateway, no server.
class BooksTest : public PortfolioTest {
protected:
  BooksTest() { open(m_prices); }
  ~BooksTest() override { m_user.reset(); }

  void setPrice(const String& code, const Date& day, double close) override {
    m_prices.set(code, day, close);
  }

  MemoryPrices m_prices;
};

} // namespace Tallymoor
