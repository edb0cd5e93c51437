#include "workbench/SourceCheck.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/PriceSource.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/SavedAnswer.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"
#include <array>

namespace Tallymoor {

namespace {

struct NamedPart {
  const char* name;
  SourcePart part;
};
constexpr std::array PARTS{NamedPart{"history", SourcePart::History},
                           NamedPart{"current", SourcePart::Current},
                           NamedPart{"search", SourcePart::Search}};

[[noreturn]] void fail(WorkbenchFailure::Status status, const String& message) {
  throw WorkbenchFailure(status, message);
}

const char* nameOf(SourcePart wanted) {
  for (const NamedPart& each : PARTS)
    if (each.part == wanted)
      return each.name;
  return "";
}

} // namespace

bool SourceCheck::run() const {
  const PriceSource source = document();
  m_out.line(u"Document: " + String(m_options.document.c_str()) + u", the price source " +
             inQuotes(source.name()));
  const SourcePart part = partOf(source);
  const SourceRequest& request = *requestOf(source, part);
  m_out.line(u"Checked: its part " + inQuotes(String(nameOf(part))));
  m_out.line(u"Address: " + request.address.fillForShow(addressValues()));
  if (!m_options.code && m_options.pages.empty()) {
    m_out.line(u"No answer to test: give a saved one with --page, or fetch one with --code.");
    return true;
  }
  const SavedAnswer answer =
      m_options.code ? fetched(request) : SavedAnswer::fromFile(m_options.pages.front());
  answer.show(m_out);
  if (!m_options.saveTo.empty()) {
    writeNewFile(m_options.saveTo, answer.bytes());
    m_out.line(u"Saved: " + String(m_options.saveTo.c_str()));
  }
  m_out.line();
  return showAnswer(m_out, answer.bytes(), request, part, m_options.allRows);
}

PriceSource SourceCheck::document() const {
  try {
    return PriceSource::fromFile(String(m_options.document.c_str()));
  } catch (const Exception& failure) {
    fail(WorkbenchFailure::NOT_READ, u"this document of a price source is invalid.\n" + failure.message());
  }
}

SourcePart SourceCheck::partOf(const PriceSource& source) const {
  for (const NamedPart& each : PARTS) {
    const bool isWanted = m_options.part.empty() || m_options.part == each.name;
    if (isWanted && requestOf(source, each.part) != nullptr)
      return each.part;
    if (isWanted && !m_options.part.empty())
      fail(WorkbenchFailure::NOT_READ, u"the source has no part " + inQuotes(String(each.name)));
  }
  fail(WorkbenchFailure::WRONG_COMMAND, u"--part is none of history, current and search");
}

AddressValues SourceCheck::addressValues() const {
  constexpr int SOME_DAYS = 30;
  AddressValues values;
  values.code = m_options.code.value_or(u"CODE");
  values.text = values.code;
  values.key = m_options.key;
  values.last = Date();
  values.first = values.last.plusDays(-SOME_DAYS);
  return values;
}

SavedAnswer SourceCheck::fetched(const SourceRequest& request) const {
  const AddressValues values = addressValues();
  if (request.address.usesKey() && values.key.empty())
    fail(WorkbenchFailure::WRONG_COMMAND, u"the source needs a key: give yours with --key");
  HTTPHeaders headers;
  for (const auto& [name, value] : request.headers)
    headers.emplace_back(name.toUTF8(), value.fillPlainly(values).toUTF8());
  const std::unique_ptr<HTTPClient> client = m_makeClient();
  return SavedAnswer::fetched(*client, request.address.fill(values), request.address.fillForShow(values),
                              values.key, headers);
}

} // namespace Tallymoor
