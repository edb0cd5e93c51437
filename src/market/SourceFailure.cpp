#include "market/SourceFailure.h"
#include "market/NetworkFailure.h"
#include "pages/AnswerTable.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr unsigned BAD_REQUEST = 400;
constexpr unsigned TOO_MANY_REQUESTS = 429;
constexpr unsigned SERVER_ERROR = 500;

SourceFault faultOfStatus(unsigned status) {
  if (status == TOO_MANY_REQUESTS)
    return SourceFault::Resting;
  return status >= BAD_REQUEST && status < SERVER_ERROR ? SourceFault::Refused : SourceFault::Network;
}

SourceFault commonFault(const std::vector<SourceReason>& reasons) {
  const bool isCommon =
      !reasons.empty() && std::all_of(reasons.begin(), reasons.end(), [&](const SourceReason& reason) {
        return reason.fault == reasons.front().fault;
      });
  return isCommon ? reasons.front().fault : SourceFault::Refused;
}

String textOf(const std::vector<SourceReason>& reasons) {
  String text;
  for (const SourceReason& reason : reasons)
    text += (text.empty() ? String() : String(u"; ")) + reason.source + u" (" + wordsOf(reason.fault) +
            u"): " + reason.text;
  return text;
}

} // namespace

String wordsOf(SourceFault fault) {
  switch (fault) {
  case SourceFault::NoPrice:
    return u"no price";
  case SourceFault::WrongCode:
    return u"wrong code";
  case SourceFault::Resting:
    return u"resting";
  case SourceFault::Unreadable:
    return u"answer not readable";
  case SourceFault::Refused:
    return u"refused";
  default:
    return u"network";
  }
}

String shortened(const String& text) {
  constexpr std::size_t MOST_UNITS = 300;
  constexpr char16_t FIRST_VISIBLE = u' ';
  String shown = text.substr(0, MOST_UNITS);
  std::replace_if(
      shown.begin(), shown.end(), [](char16_t unit) { return unit < FIRST_VISIBLE; }, u' ');
  return text.size() > MOST_UNITS ? shown + u"..." : shown;
}

SourceException::SourceException(const std::vector<SourceReason>& reasons)
    : SourceException(commonFault(reasons), textOf(reasons)) {}

void SourceException::typeName(String& text) const {
  text = u"SourceException";
}

SourceFault faultOf(const Exception& failure) {
  if (const auto* source = dynamic_cast<const SourceException*>(&failure))
    return source->fault();
  if (const auto* http = dynamic_cast<const HTTPException*>(&failure))
    return isNotFound(*http) ? SourceFault::WrongCode : faultOfStatus(http->code());
  if (const auto* answer = dynamic_cast<const AnswerException*>(&failure))
    return answer->fault() == AnswerException::Fault::SourceError ? SourceFault::Refused
                                                                  : SourceFault::Unreadable;
  return SourceFault::Unreadable;
}

} // namespace Tallymoor
