#include "workbench/Workbench.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "workbench/FindCommand.h"
#include "workbench/PlainOutput.h"
#include "workbench/TableCommand.h"
#include "workbench/WorkbenchFailure.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>

namespace Tallymoor {

namespace {

using Arguments = std::vector<std::string>;

constexpr const char16_t* HELP =
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

/// A command line, taken apart. Throws WorkbenchFailure for a wrong one.
struct CommandLine {
  explicit CommandLine(Arguments arguments) {
    for (CLI::App* part : {&app, check, find, table})
      part->set_help_flag();
    app.add_flag("--help", help);
    app.add_flag("--version", version);
    app.allow_extras()->require_subcommand(0, 1);
    addCheckOptions();
    // What stands on a page may look like an option.
    find->prefix_command();
    table->prefix_command();
    std::reverse(arguments.begin(), arguments.end());
    try {
      app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) { // begins with the option, whose value is missing or empty
      const std::string what = error.what();
      failForUse(textOf(what.substr(0, what.find(':'))) + u" needs a value");
    }
    if (*check)
      checkTheCheck();
  }

  CLI::App app;
  CLI::App* const check = app.add_subcommand("check");
  CLI::App* const find = app.add_subcommand("find");
  CLI::App* const table = app.add_subcommand("table");
  bool help = false;
  bool version = false;
  CheckCommand::Options options; ///< of check

private:
  void addCheckOptions() {
    const CLI::Validator hasText([](const std::string& text) { return text.empty() ? "empty" : ""; }, "");
    check->allow_extras();
    check->add_option("document", options.document);
    check->add_option("--page", options.pages)->allow_extra_args(false)->check(hasText);
    check
        ->add_option_function<std::string>("--code",
                                           [this](const auto& text) { options.code = textOf(text); })
        ->check(hasText);
    check->add_option("--save", options.saveTo)->check(hasText);
    check
        ->add_option_function<std::string>("--domain",
                                           [this](const auto& text) { options.domain = textOf(text); })
        ->check(hasText);
    check->add_flag("--all", options.allRows);
  }

  void checkTheCheck() const {
    for (const std::string& extra : check->remaining())
      failForUse(extra.starts_with('-') ? u"check knows no option " + textOf(extra)
                                        : String(u"check takes one document"));
    if (options.document.empty())
      failForUse(u"check needs a locator document");
    if (options.code && !options.pages.empty())
      failForUse(u"--page and --code can't go together");
    if (!options.saveTo.empty() && !options.code)
      failForUse(u"--save goes with --code");
  }
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
  const CommandLine line(arguments);
  if (line.help) {
    out.line(HELP);
    return true;
  }
  if (line.version) {
    out.line(u"tallymoor-locator, " + String(VERSION_TEXT));
    return true;
  }
  if (*line.check)
    return CheckCommand(out, line.options, m_makeClient).run();
  if (*line.find) {
    const Arguments texts = line.find->remaining();
    if (texts.size() != 2)
      failForUse(u"find takes a page and a text; a text of several words stands in quotation marks");
    return FindCommand(out, texts[0], textOf(texts[1])).run();
  }
  if (*line.table) {
    const Arguments texts = line.table->remaining();
    if (texts.size() < 2)
      failForUse(u"table takes a page and the texts of one row");
    std::vector<String> cells;
    std::transform(texts.begin() + 1, texts.end(), std::back_inserter(cells), textOf);
    return TableCommand(out, texts[0], cells).run();
  }
  const Arguments unknown = line.app.remaining();
  failForUse(unknown.empty() ? String(u"no command is given; --help tells of them")
                             : u"there is no command " + textOf(unknown[0]) + u"; --help tells of them");
}

} // namespace Tallymoor
