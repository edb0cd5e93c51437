#pragma once
#include "books/CapitalRecordWalk.h"
#include "session/OpenPortfolios.h"

namespace Tallymoor {

class SharePortfolioUser;

// What the books leave to the user: suspected splits, and a cash reserve below zero. GUI thread, under the
// big mutex.

/// A portfolio whose days are computed. A suspected split is put to the user where it is met, so that it
/// counts from that very day; the answer is recorded, so the same question never comes twice.
class AskingPortfolio : public WalkedPortfolio {
public:
  /// Not owned.
  explicit AskingPortfolio(SharePortfolioUser& portfolio) : m_portfolio(portfolio) {}

  const XMLSharePortfolio& portfolio() const override;
  Date portfolioStartDate() const override;
  CheckedPrice checkPriceForSplit(const String& code, const Date& date) override;
  void runLengthy(const String& caption, const String& heading, unsigned steps, HasLengthyFunctions& work,
                  int argument) override;
  bool isStopWanted() const override;

private:
  SharePortfolioUser& m_portfolio;
};

/// Brings the portfolio's capital record up to date. Throws as the record's update.
void updateCapitalRecord(SharePortfolioUser& portfolio);

/// Computes all days of all portfolios again. Throws as the update.
void recomputeCapital(const OpenPortfolios& portfolios);

/// Brings a portfolio's record up to date, and warns, once a run, of a negative cash reserve; takes the
/// warning back when the reserve no longer is. Reports failures itself. Does nothing in a background pass.
void checkCashReserve(SharePortfolioUser& portfolio);

/// Takes the warning of a negative cash reserve back, since it names a portfolio that goes, or its old name.
void forgetCashWarning(const SharePortfolioUser& portfolio);

} // namespace Tallymoor
