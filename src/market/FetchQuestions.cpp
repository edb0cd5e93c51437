#include "market/FetchQuestions.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/NetworkFailure.h"
#include "market/TransferFailure.h"

namespace Tallymoor {

namespace {

String causeOf(const HTTPException& failure) {
  if (failure.code() != 0)
    return u"The price source answered with status " + String::fromLong(failure.code()) + u".";
  if (const auto* transfer = dynamic_cast<const TransferFailure*>(&failure))
    return transfer->reason() + u".";
  return failure.message();
}

String rangeText(const HistoryRange& range) {
  return range.start.toString(DATE_DISPLAY_LOCAL) + u" and " + range.end.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

bool FetchQuestions::mayAsk() {
  // A background pass holds the big mutex: a dialog would keep it for as long as the user is away.
  return !inBackgroundPass && UserInteraction::exists();
}

void FetchQuestions::showStatus(const String& text) {
  if (mayAsk())
    UserInteraction::Instance().setStatusText(text);
}

void FetchQuestions::forget() {
  m_asked.clear();
  m_quiet = false;
}

bool FetchQuestions::ask(const String& code, const String& question) {
  if (!mayAsk() || m_quiet || !m_asked.insert(code).second)
    return false;
  const bool yes = UserInteraction::Instance().question(question);
  m_quiet = !yes;
  return yes;
}

FetchQuestions::Answer FetchQuestions::afterHistory(const String& code,
                                                    const HistoryFailures::Failure& failure) {
  try {
    std::rethrow_exception(failure.what);
  } catch (const HTTPException& http) {
    if (isNotFound(http))
      return askWhetherDelisted(code, causeOf(http));
    return ask(code, u"There was a problem accessing the internet for code\n" + code + u" between " +
                         rangeText(failure.range) + u". \n" + causeOf(http) + u"\nDo you want to retry?")
               ? Answer::Retry
               : Answer::GiveUp;
  } catch (const HTMLException&) {
    return askWhetherDelisted(code, u"The page that the price source sent can't be read.\n"
                                    u"You may need an update to support new internet data.");
  } catch (const Exception&) {
    return Answer::GiveUp;
  }
}

FetchQuestions::Answer FetchQuestions::askWhetherDelisted(const String& code, const String& cause) {
  const bool delisted = ask(
      code, u"Tallymoor cannot find any internet data for the code\n" + code + u". It may be delisted. \n" +
                cause + u"\nDo you want to treat this share as delisted to avoid price queries?");
  return delisted ? Answer::Delisted : Answer::GiveUp;
}

bool FetchQuestions::wantsQuoteAgain(const String& code, const HTTPException& failure) {
  return !isNotFound(failure) &&
         ask(code, u"There was a problem accessing the internet to get the current price for\n" + code +
                       u". \n" + causeOf(failure) + u"\nDo you want to retry?");
}

} // namespace Tallymoor
