#include "session/BookQuestions.h"
#include "books/SharePortfolioUser.h"
#include "books/SuspectedSplit.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "session/RecordChanges.h"
#include <optional>

namespace Tallymoor {

namespace {

constexpr int WARNING_LEVEL = 1;

String toldQuestionOf(const SuspectedSplit& split, const String& code, const Date& date) {
  const String kind = split.isMerge() ? u"reverse share split" : u"share split";
  return u"A source of prices tells of a " + kind + u"\nof the stock with code " + code + u"\non " +
         date.toString(DATE_DISPLAY_LOCAL) + u" of " + String::fromLong(split.proposed().first) + u":" +
         String::fromLong(split.proposed().second) +
         u".\nPlease confirm the ratio, or press cancel\nif there was no " + kind + u'.';
}

String questionOf(const SuspectedSplit& split, const String& code, const Date& date) {
  if (split.isTold())
    return toldQuestionOf(split, code, date);
  const String kind = split.isMerge() ? u"reverse share split" : u"share split";
  const String confirmed = split.isMerge() ? u"reverse split" : u"share split";
  return u"A possible " + kind + u" was detected for the stock\nwith code " + code +
         u" around the day of \n" + date.toString(DATE_DISPLAY_LOCAL) + u" at a value of " +
         String::fromLong(split.proposed().first) + u":" + String::fromLong(split.proposed().second) +
         u".\nPlease confirm the " + confirmed +
         u" ratio, or press cancel\nif this was just stock value movement.";
}

/// Nothing when the user says that there was no split.
std::optional<WholeRatio> ask(const SuspectedSplit& split, const String& code, const Date& date) {
  const String title =
      split.isMerge() ? u"Possible reverse share split (share merge)" : u"Possible share split";
  const String remark =
      split.isMerge() ? u"  (shares before : shares after)" : u"  (shares after : shares before)";
  return UserInteraction::Instance().askRatio(title, questionOf(split, code, date), remark,
                                              SuspectedSplit::LARGEST_NUMBER, split.proposed());
}

String cashWarningKey(const SharePortfolioUser& portfolio) {
  return portfolio.name() + u"CRW";
}

void warnOfCash(const SharePortfolioUser& portfolio) {
  UserInteraction::Instance().warnOnce(u"Warning: The cash reserve for " + portfolio.name() +
                                           u" is currently negative. You need to reconcile the cash "
                                           u"reserve with the actual trading account.",
                                       u"Cash Reserve Warning", cashWarningKey(portfolio), WARNING_LEVEL);
}

} // namespace

const XMLSharePortfolio& AskingPortfolio::portfolio() const {
  return m_portfolio.portfolio();
}

Date AskingPortfolio::portfolioStartDate() const {
  return m_portfolio.portfolioStartDate();
}

CheckedPrice AskingPortfolio::checkPriceForSplit(const String& code, const Date& date) {
  const SplitBook::PriceCheck checked = m_portfolio.priceWithSplitCheck(code, date);
  if (!checked.split || inBackgroundPass)
    return {checked.price, false};
  const std::vector<std::int32_t> factors = checked.split->factors(ask(*checked.split, code, date));
  makeChange(u"Answer on a share split of " + code,
             [&] { m_portfolio.recordAdjustments(code, date, factors); });
  return {checked.price, true};
}

void AskingPortfolio::runLengthy(const String& caption, const String& heading, unsigned steps,
                                 HasLengthyFunctions& work, int argument) {
  UserInteraction::Instance().runLengthy(caption, heading, steps, work, argument);
}

bool AskingPortfolio::isStopWanted() const {
  return UserInteraction::exists() && UserInteraction::Instance().isStopWanted();
}

void updateCapitalRecord(SharePortfolioUser& portfolio) {
  AskingPortfolio asking(portfolio);
  portfolio.capitalRecord().update(asking);
}

void recomputeCapital(const OpenPortfolios& portfolios) {
  for (const auto& [name, portfolio] : portfolios) {
    SharePortfolioCapitalRecordUser& record = portfolio->capitalRecord();
    record.recordsChangedFrom(record.firstRecordDate());
  }
  for (const auto& [name, portfolio] : portfolios)
    updateCapitalRecord(*portfolio);
}

void checkCashReserve(SharePortfolioUser& portfolio) {
  if (inBackgroundPass)
    return;
  try {
    withUnforeseenFailures([&portfolio] { updateCapitalRecord(portfolio); });
    // The text tells the present state.
    if (Date::hasFixedDate())
      return;
    if (portfolio.checkCashReserve() == SharePortfolioUser::CashReserve::Negative)
      warnOfCash(portfolio);
    else
      forgetCashWarning(portfolio);
  } catch (const Exception& failure) {
    UserInteraction::Instance().reportException(u"There was a problem refreshing your capital records.",
                                                failure);
  }
}

void forgetCashWarning(const SharePortfolioUser& portfolio) {
  if (UserInteraction::exists())
    UserInteraction::Instance().warningOver(cashWarningKey(portfolio));
}

} // namespace Tallymoor
