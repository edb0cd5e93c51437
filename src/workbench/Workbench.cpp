#include "workbench/Workbench.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "workbench/FindCommand.h"
#include "workbench/PlainOutput.h"
#include "workbench/TableCommand.h"
#include "workbench/WorkbenchFailure.h"
#include <ostream>
#include <utility>

namespace Tallymoor {

namespace {

using Arguments = std::vector<std::string>;

const char16_t* const HELP =
    u"tallymoor-locator tries and mends the documents that tell Tallymoor where prices come from.\n"
    u"\n"
    u"  tallymoor-locator check DOCUMENT [--page FILE | --code CODE [--save FILE]] [--domain NAME] [--all]\n"
    u"  tallymoor-locator find PAGE TEXT\n"
    u"  tallymoor-locator table PAGE TEXT TEXT ...\n"
    u"\n"
    u"check shows what the program makes of a page: the walk step by step, and the price or the rows that "
    u"it\n"
    u"ends with, or where it stops and what stands there instead.\n"
    u"  --page FILE    a page that was saved; again for each further page of a search\n"
    u"  --code CODE    fetch the page for this stock code (for a search: this text)\n"
    u"  --save FILE    keep the fetched page in a new file, for find and table\n"
    u"  --domain NAME  the source to check, where the document has several; the one in use if not given\n"
    u"  --all          show all rows of a long table\n"
    u"\n"
    u"find shows the tags of a saved page that hold a text, and writes the steps that lead to each.\n"
    u"\n"
    u"table takes the texts of one row of a saved page, either\n"
    u"    date open high low close volume [adjusted close]   or   code name market\n"
    u"or with their types, as in Date=3-Mar-06 Close=1.52, and writes a TableLocator that reads the table.\n"
    u"\n"
    u"The exit status is 0 when what was asked for is there, 1 when it is not, 2 for a wrong command line or "
    u"a\n"
    u"file that can't be read.";

[[noreturn]] void failForUse(const String& message) {
  throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND, message);
}

String textOf(const std::string& argument) {
  return String(argument.c_str());
}

bool isOption(const std::string& argument) {
  return argument.compare(0, 2, "--") == 0;
}

/// Reads the arguments of "check".
class CheckArguments {
public:
  explicit CheckArguments(const Arguments& arguments) : m_arguments(arguments) {}

  CheckCommand::Options options() {
    while (m_next < m_arguments.size())
      take(m_arguments[m_next++]);
    if (m_options.document.empty())
      failForUse(u"check needs a locator document");
    if (m_options.code && !m_options.pages.empty())
      failForUse(u"--page and --code can't go together");
    if (!m_options.saveTo.empty() && !m_options.code)
      failForUse(u"--save goes with --code");
    return m_options;
  }

private:
  void take(const std::string& argument) {
    if (argument == "--page")
      m_options.pages.push_back(value(argument));
    else if (argument == "--code")
      m_options.code = textOf(value(argument));
    else if (argument == "--save")
      m_options.saveTo = value(argument);
    else if (argument == "--domain")
      m_options.domain = textOf(value(argument));
    else if (argument == "--all")
      m_options.allRows = true;
    else if (isOption(argument))
      failForUse(u"check knows no option " + textOf(argument));
    else if (m_options.document.empty())
      m_options.document = argument;
    else
      failForUse(u"check takes one document");
  }

  std::string value(const std::string& option) {
    if (m_next == m_arguments.size() || m_arguments[m_next].empty())
      failForUse(textOf(option) + u" needs a value");
    return m_arguments[m_next++];
  }

  const Arguments& m_arguments;
  std::size_t m_next = 1;
  CheckCommand::Options m_options;
};

} // namespace

Workbench::Workbench(std::ostream& out, std::ostream& errors, CheckCommand::ClientFactory makeClient)
    : m_out(out), m_errors(errors), m_makeClient(std::move(makeClient)) {}

int Workbench::run(const Arguments& arguments) {
  try {
    return runCommand(arguments) ? DONE : NOT_READ;
  } catch (const WorkbenchFailure& failure) {
    return fail(failure.status() == WorkbenchFailure::NOT_READ ? NOT_READ : WRONG_USE, failure.message());
  } catch (const Exception& failure) {
    return fail(NOT_READ, failure.message());
  }
}

int Workbench::fail(int status, const String& message) {
  m_out.flush();
  PlainOutput(m_errors).line(u"tallymoor-locator: " + message);
  return status;
}

bool Workbench::runCommand(const Arguments& arguments) {
  PlainOutput out(m_out);
  const std::string command = arguments.empty() ? std::string() : arguments.front();
  if (command == "--help") {
    out.line(HELP);
    return true;
  }
  if (command == "--version") {
    out.line(u"tallymoor-locator, " + String(VERSION_TEXT));
    return true;
  }
  if (command == "check")
    return CheckCommand(out, CheckArguments(arguments).options(), m_makeClient).run();
  if (command == "find") {
    if (arguments.size() != 3)
      failForUse(u"find takes a page and a text; a text of several words stands in quotation marks");
    return FindCommand(out, arguments[1], textOf(arguments[2])).run();
  }
  if (command == "table") {
    if (arguments.size() < 3)
      failForUse(u"table takes a page and the texts of one row");
    std::vector<String> texts;
    for (std::size_t i = 2; i < arguments.size(); ++i)
      texts.push_back(textOf(arguments[i]));
    return TableCommand(out, arguments[1], texts).run();
  }
  failForUse(command.empty() ? String(u"no command is given; --help tells of them")
                             : u"there is no command " + textOf(command) + u"; --help tells of them");
}

} // namespace Tallymoor
