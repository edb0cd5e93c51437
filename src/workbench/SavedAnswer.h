#pragma once
#include "foundation/String.h"
#include "market/HTTPAnswer.h"
#include <string>

namespace Tallymoor {

class HTTPClient;
class PlainOutput;

/// What a source answered: the bytes of a saved file, or of an address. Failures throw WorkbenchFailure.
class SavedAnswer {
public:
  static SavedAnswer fromFile(const std::string& path);
  /// Puts the client online. The shown address, which has no key in it, stands in messages. A key that the
  /// answer repeats is taken out of it, unless it is so short that it may be a part of a figure.
  static SavedAnswer fetched(HTTPClient& client, const String& address, const String& shownAddress,
                             const String& key, const HTTPHeaders& headers = {});

  const std::string& bytes() const { return m_bytes; }
  /// True for a web page; otherwise it is JSON or text.
  bool isPage() const;
  /// A line with name, size and form.
  void show(PlainOutput& out) const;

private:
  SavedAnswer(String name, std::string bytes) : m_name(std::move(name)), m_bytes(std::move(bytes)) {}

  String m_name;
  std::string m_bytes;
};

/// True when the text begins with http:// or https://.
bool isAddress(const std::string& text);

} // namespace Tallymoor
