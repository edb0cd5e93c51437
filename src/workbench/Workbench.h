#pragma once
#include "workbench/CheckCommand.h"
#include <iosfwd>
#include <string>
#include <vector>

namespace Tallymoor {

/// What the program tallymoor-locator does: tries locator documents on pages, and proposes walks for them.
class Workbench {
public:
  static constexpr int DONE = 0;      ///< what was asked for is there
  static constexpr int NOT_READ = 1;  ///< the document or page does not give it, or could not be fetched
  static constexpr int WRONG_USE = 2; ///< the command line is wrong, or names a file that can't be read

  /// The streams are not owned. The factory makes the client for pages that are fetched.
  Workbench(std::ostream& out, std::ostream& errors, CheckCommand::ClientFactory makeClient);

  /// Runs one command line, without the program's name; returns the exit status.
  int run(const std::vector<std::string>& arguments);

private:
  bool runCommand(const std::vector<std::string>& arguments);
  int fail(int status, const String& message);

  std::ostream& m_out;
  std::ostream& m_errors;
  CheckCommand::ClientFactory m_makeClient;
};

} // namespace Tallymoor
