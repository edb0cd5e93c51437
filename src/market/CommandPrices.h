#pragma once
#include "market/CsvFile.h"
#include "market/PriceProvider.h"
#include <chrono>
#include <string>
#include <vector>

namespace Tallymoor {

/// A command of the user's that writes past prices of a stock as CSV to its standard output. It is started
/// without a shell, in a session of its own and without input; at the end of its time, or when it writes too
/// much, it is ended with all that it started.
///
/// Its words may hold the variables of AddressTemplate: {CODE}, {FROM:yyyy-MM-dd}, {TO:yyyy-MM-dd}. The first
/// word, which names the program, is taken as it is.
class CommandPrices : public PriceProvider {
public:
  static constexpr std::chrono::seconds TIME{30};

  /// Throws Exception for an unknown variable.
  CommandPrices(const String& name, const std::vector<String>& words, const CsvAnswers& answers,
                std::chrono::milliseconds time = TIME);

  const String& name() const override { return m_name; }
  /// A code that begins with "-" would be taken for an option.
  bool serves(const String& code) const override { return !code.empty() && code[0] != u'-'; }
  bool offersSearch() const override { return false; }

  std::optional<AnsweredPrice> currentPrice(const String& code, const std::stop_token& stop) const override;
  AnsweredHistory history(const String& code, const HistoryRange& range,
                          const std::stop_token& stop) const override;
  void search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
              const std::stop_token& stop) const override;

private:
  String m_name;
  std::vector<String> m_words;
  CsvAnswers m_answers;
  std::chrono::milliseconds m_time;
};

} // namespace Tallymoor
