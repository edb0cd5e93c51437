#pragma once
#include "market/AddressTemplate.h"
#include "pages/AnswerFormat.h"
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Tallymoor {

class XMLElement;

/// How a source is asked for one kind of thing, and how its answer is read.
struct SourceRequest {
  AddressTemplate address;
  std::vector<std::pair<String, AddressTemplate>> headers; ///< names and values
  AnswerFormat format;
  std::vector<String> wrongCodePaths; ///< those of the format's error paths that say that the code is unknown
  std::size_t daysAPage = 0;          ///< days of history that one answer covers at most; 0 for any number
};

/// Codes that a source serves.
struct ServedCodes {
  String pattern;  ///< "*" stands for any text, "?" for one character; case does not count
  String currency; ///< of their prices; empty when unknown
};

/// How often a source may be asked. 0 for no limit.
struct SourceLimits {
  std::size_t atOnce = 2;
  std::size_t perMinute = 0;
  std::size_t perDay = 0;
};

/// A source of prices, as its document describes it. Never changes once it is read: safe on any thread.
class PriceSource {
public:
  /// Reads the document of a file. Throws XMLException for one that cannot be read, and Exception for a value
  /// in it that means nothing, with the name of the file and what is wrong.
  static PriceSource fromFile(const String& fileName);
  /// The same for a document in memory.
  static PriceSource fromText(const std::string& document);

  /// What the user sees.
  const String& name() const { return m_name; }
  const std::vector<ServedCodes>& served() const { return m_served; }
  bool serves(const String& code) const { return servedBy(code) != nullptr; }
  /// The currency of the code's prices; empty when unknown.
  String currencyOf(const String& code) const;
  const String& terms() const { return m_terms; }
  const String& termsLink() const { return m_termsLink; }
  const SourceLimits& limits() const { return m_limits; }
  bool needsKey() const;
  /// The servers that get the user's key, such as "https://host".
  std::set<String> keyServers() const;
  const String& keyHint() const { return m_keyHint; }
  const String& keyLink() const { return m_keyLink; }
  /// A code that the source is known to have; empty when none is.
  const String& tryCode() const { return m_tryCode; }
  /// The day, "2026-11-22", on which the document was written without being tried; empty when it was tried.
  const String& notTried() const { return m_notTried; }

  // Null for what the source does not offer.
  const SourceRequest* currentPrice() const { return m_currentPrice ? &*m_currentPrice : nullptr; }
  const SourceRequest* history() const { return m_history ? &*m_history : nullptr; }
  const SourceRequest* search() const { return m_search ? &*m_search : nullptr; }

private:
  explicit PriceSource(const XMLElement& document);
  const ServedCodes* servedBy(const String& code) const;

  String m_name;
  std::vector<ServedCodes> m_served;
  String m_terms;
  String m_termsLink;
  SourceLimits m_limits;
  String m_keyHint;
  String m_keyLink;
  String m_tryCode;
  String m_notTried;
  std::optional<SourceRequest> m_currentPrice;
  std::optional<SourceRequest> m_history;
  std::optional<SourceRequest> m_search;
};

} // namespace Tallymoor
