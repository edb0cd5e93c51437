#pragma once
#include "workbench/CheckCommand.h"
#include <iosfwd>
#include <string>
#include <vector>

namespace Tallymoor {

/// The program tallymoor-locator: tests locator documents on pages and proposes walks.
class Workbench {
public:
  static constexpr int DONE = 0;      ///< The result was found.
  static constexpr int NOT_READ = 1;  ///< The document or page does not give the result, or can't be fetched.
  static constexpr int WRONG_USE = 2; ///< The command line is wrong or names an unreadable file.

  /// The streams are not owned. The factory makes the HTTP client.
  Workbench(std::ostream& out, std::ostream& errors, CheckCommand::ClientFactory makeClient);

  /// Runs a command line without the program's name. Returns the exit status.
  int run(const std::vector<std::string>& arguments);

private:
  bool runCommand(const std::vector<std::string>& arguments);
  int fail(int status, const String& message);

  std::ostream& m_out;
  std::ostream& m_errors;
  CheckCommand::ClientFactory m_makeClient;
};

} // namespace Tallymoor
