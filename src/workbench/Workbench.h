#pragma once
#include "workbench/CheckCommand.h"
#include "workbench/NewCommand.h"
#include <iosfwd>
#include <string>
#include <vector>

namespace Tallymoor {

/// The program tallymoor-locator: tests locator documents on pages and proposes
/// walks; the same for documents of price sources and their answers.
class Workbench {
public:
  static constexpr int DONE = 0;      ///< The result was found.
  static constexpr int NOT_READ = 1;  ///< The document or page does not give the result, or can't be fetched.
  static constexpr int WRONG_USE = 2; ///< The command line is wrong or names an unreadable file.

  /// The streams are not owned. The factory makes the HTTP client. The user is asked questions only on the
  /// input, null for none: when the command line says so, or when it is a terminal.
  Workbench(std::ostream& out, std::ostream& errors, CheckCommand::ClientFactory makeClient,
            std::istream* input = nullptr, bool isTerminal = false);

  /// Runs a command line without the program's name. Returns the exit status.
  int run(const std::vector<std::string>& arguments);

private:
  bool runCommand(const std::vector<std::string>& arguments);
  bool runNew(NewCommand::Options options);
  int fail(int status, const String& message);

  std::ostream& m_out;
  std::ostream& m_errors;
  CheckCommand::ClientFactory m_makeClient;
  std::istream* m_input;
  bool m_isTerminal;
};

} // namespace Tallymoor
