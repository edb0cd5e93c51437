#include "workbench/SavedAnswer.h"
#include "market/HTTPClient.h"
#include "market/KeyMask.h"
#include "market/URL.h"
#include "pages/AnswerForm.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"

namespace Tallymoor {

namespace {

[[noreturn]] void failToFetch(const String& address, const String& cause) {
  throw WorkbenchFailure(WorkbenchFailure::NOT_READ, address + u" can't be fetched: " + cause);
}

const char16_t* nameOf(AnswerReader form) {
  return form == AnswerReader::Json ? u"JSON" : form == AnswerReader::Csv ? u"text (CSV)" : u"a web page";
}

} // namespace

SavedAnswer SavedAnswer::fromFile(const std::string& path) {
  return {String(path.c_str()), readWholeFile(path)};
}

SavedAnswer SavedAnswer::fetched(HTTPClient& client, const String& address, const String& shownAddress,
                                 const String& key, const HTTPHeaders& headers) {
  constexpr std::size_t SHORTEST_KEY = 4;
  try {
    const URL url(address);
    checkScheme(url);
    client.goOnline();
    const HTTPAnswer answer = client.get(url, headers);
    std::string bytes(answer.body.begin(), answer.body.end());
    if (key.size() >= SHORTEST_KEY)
      maskKey(bytes, key);
    if (!answer.isSuccess())
      failToFetch(shownAddress, u"the server answered with status " + numberText(answer.status) + u": " +
                                    shortened(String::fromUTF8(bytes)));
    return {u"the answer", std::move(bytes)};
  } catch (const HTTPException& failure) {
    failToFetch(shownAddress, fetchFailure(failure));
  }
}

bool SavedAnswer::isPage() const {
  return seemingForm(m_bytes) == AnswerReader::Headings;
}

void SavedAnswer::show(PlainOutput& out) const {
  out.line(u"Answer: " + m_name + u", " + counted(m_bytes.size(), u"byte", u"bytes") + u", " +
           nameOf(seemingForm(m_bytes)));
}

bool isAddress(const std::string& text) {
  return text.starts_with("http://") || text.starts_with("https://");
}

} // namespace Tallymoor
