#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// A web address split into what a request needs. A plain value.
///
/// The split is deliberately simple: the host ends at the first ":", "/" or "\"; what follows, query
/// included, is the path, which always begins with "/". The port is 80 unless the text says otherwise,
/// whatever the scheme.
class URL {
public:
  /// Throws HTTPException "URL::URL - no host found ".
  explicit URL(const String& text);

  const String& host() const { return m_host; }
  const String& path() const { return m_path; }
  /// The text as it was given.
  const String& whole() const { return m_whole; }
  std::uint32_t port() const { return m_port; }

  /// What stands before "://", in lower case; empty when there is none.
  String scheme() const;
  /// True when the text names a port itself.
  bool hasPort() const;

private:
  void splitRest(const String& rest);

  String m_host;
  String m_path;
  String m_whole;
  std::uint32_t m_port = 80;
};

} // namespace Tallymoor
