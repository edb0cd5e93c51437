#include "market/URL.h"
#include "foundation/Exception.h"

namespace Tallymoor {

namespace {

constexpr std::u16string_view SCHEME_END = u"://";

/// Where the part behind the scheme begins.
std::size_t startOfHost(const String& text) {
  const std::size_t schemeEnd = text.find(SCHEME_END);
  return schemeEnd == String::npos ? 0 : schemeEnd + SCHEME_END.size();
}

} // namespace

URL::URL(const String& text) : m_path(u"/"), m_whole(text) {
  const String working = text.substr(startOfHost(text));
  const std::size_t hostEnd = working.find_first_of(u":/\\");
  m_host = working.substr(0, hostEnd);
  if (m_host.empty())
    throw HTTPException(u"URL::URL - no host found ");
  if (hostEnd != String::npos)
    splitRest(working.substr(hostEnd));
}

void URL::splitRest(const String& rest) {
  std::size_t pathStart = 0;
  if (rest.front() == u':') {
    pathStart = rest.find_first_of(u"/\\");
    // A text that is no number converts as everywhere else, so to 0; the client then fails to connect.
    m_port = static_cast<std::uint32_t>(String(rest.substr(1, pathStart - 1)).toLong());
  }
  if (pathStart != String::npos)
    m_path += rest.substr(pathStart + 1); // whatever the separator was, the path has a "/" there
}

String URL::scheme() const {
  const std::size_t schemeEnd = m_whole.find(SCHEME_END);
  return schemeEnd == String::npos ? String() : String(m_whole.substr(0, schemeEnd)).toLower();
}

bool URL::hasPort() const {
  return m_whole.compare(startOfHost(m_whole) + m_host.size(), 1, u":") == 0;
}

} // namespace Tallymoor
