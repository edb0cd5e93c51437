#include "workbench/Workbench.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "workbench/AnswerSearch.h"
#include "workbench/FindCommand.h"
#include "workbench/LocatorDocument.h"
#include "workbench/PlainOutput.h"
#include "workbench/SavedAnswer.h"
#include "workbench/SourceCheck.h"
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
    u"tallymoor-locator tests the documents that tell Tallymoor where prices come from, and helps to write "
    u"and\n"
    u"repair them.\n"
    u"\n"
    u"  tallymoor-locator new ADDRESS|FILE [--name NAME] [--codes PATTERN] [--currency CODE] [--code CODE]\n"
    u"                        [--key KEY] [--address ADDRESS] [--save FILE] [--to FILE] [--ask] [answers]\n"
    u"  tallymoor-locator check DOCUMENT [--page FILE | --code CODE [--save FILE]] [--all]\n"
    u"                          [--domain NAME] [--part PART] [--key KEY]\n"
    u"  tallymoor-locator find PAGE TEXT\n"
    u"  tallymoor-locator table PAGE TEXT TEXT ...\n"
    u"\n"
    u"new looks at an answer with prices (JSON, CSV or a web page with a table), and writes a document of a "
    u"price\n"
    u"source that reads it. What the answer leaves open is a question; nothing is guessed.\n"
    u"  --code CODE       the code in the address; becomes {CODE}\n"
    u"  --key KEY         your key in the address; becomes {KEY} and is not shown\n"
    u"  --address ADDRESS the address of a file's answer\n"
    u"  --to FILE         write the document to a new file\n"
    u"  --ask             ask the questions even if the input is no terminal\n"
    u"  answers           --dates PATTERN, --decimal SIGN, --time-zone ZONE, --close PLACE\n"
    u"\n"
    u"check shows how the program reads a page: the walk step by step and the price or rows it leads to, or\n"
    u"the step that fails and the tags that are there instead. Of a price source it shows what is read from\n"
    u"an answer.\n"
    u"  --page FILE    a saved page; repeat it for each further page of a search\n"
    u"  --code CODE    fetch the page for this stock code (for a search: this text)\n"
    u"  --save FILE    save the fetched page to a new file, for find and table\n"
    u"  --domain NAME  the source to check; default: the active one\n"
    u"  --part PART    of a price source: history, current or search\n"
    u"  --key KEY      your key for a price source\n"
    u"  --all          show all rows of a long table\n"
    u"\n"
    u"find lists the tags of a saved page that contain a text and writes the steps to each. In JSON and CSV "
    u"it\n"
    u"lists the places of the text and their columns.\n"
    u"\n"
    u"table takes the texts of one row of a saved page, either\n"
    u"    date open high low close volume [adjusted close]   or   code name market\n"
    u"or with their types (Date=3-Mar-06 Close=1.52), and writes a TableLocator that reads the table;\n"
    u"for JSON and CSV it writes the columns of a price source.\n"
    u"\n"
    u"The exit status is 0 if the result was found, 1 if it was not, 2 for a wrong command line or an\n"
    u"unreadable file.";

[[noreturn]] void failForUse(const String& message) {
  throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND, message);
}

String textOf(const std::string& argument) {
  return String(argument.c_str());
}

/// A parsed command line. Throws WorkbenchFailure if it is wrong.
struct CommandLine {
  explicit CommandLine(Arguments arguments) {
    for (CLI::App* part : {&app, check, find, table, make})
      part->set_help_flag();
    app.add_flag("--help", help);
    app.add_flag("--version", version);
    app.allow_extras()->require_subcommand(0, 1);
    addCheckOptions();
    addNewOptions();
    // Text from a page can look like an option.
    find->prefix_command();
    table->prefix_command();
    std::reverse(arguments.begin(), arguments.end());
    try {
      app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) { // The message begins with the option whose value is missing.
      const std::string what = error.what();
      failForUse(textOf(what.substr(0, what.find(':'))) + u" needs a value");
    }
    if (*check)
      checkTheCheck();
    if (*make)
      checkTheNew();
  }

  CLI::App app;
  CLI::App* const check = app.add_subcommand("check");
  CLI::App* const find = app.add_subcommand("find");
  CLI::App* const table = app.add_subcommand("table");
  CLI::App* const make = app.add_subcommand("new");
  bool help = false;
  bool version = false;
  CheckCommand::Options options; ///< Of the check command.
  NewCommand::Options newOptions;

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
    check->add_option("--part", options.part)->check(hasText);
    addText(*check, "--key", options.key);
  }

  static CLI::Option* addText(CLI::App& part, const std::string& name, String& value) {
    const CLI::Validator hasText([](const std::string& text) { return text.empty() ? "empty" : ""; }, "");
    return part.add_option_function<std::string>(name, [&value](const auto& text) { value = textOf(text); })
        ->check(hasText);
  }

  void addNewOptions() {
    make->allow_extras();
    make->add_option("from", newOptions.from);
    addText(*make, "--name", newOptions.source.name);
    addText(*make, "--codes", newOptions.source.codes);
    addText(*make, "--currency", newOptions.source.currency);
    addText(*make, "--code", newOptions.source.tryCode);
    addText(*make, "--address", newOptions.source.address);
    addText(*make, "--key", newOptions.key);
    make->add_option("--save", newOptions.saveTo);
    make->add_option("--to", newOptions.documentTo);
    make->add_flag("--ask", newOptions.ask);
    using About = FormatDoubt::About;
    for (const About about : {About::DateOrder, About::DecimalSign, About::TimeZone, About::CloseColumn})
      make->add_option_function<std::string>(
          DoubtQuestions::optionOf(about),
          [this, about](const auto& text) { newOptions.answers[about] = textOf(text); });
  }

  void checkTheNew() const {
    for (const std::string& extra : make->remaining())
      failForUse(extra.starts_with('-') ? u"new has no option " + textOf(extra)
                                        : String(u"new needs exactly one address or file"));
    if (newOptions.from.empty())
      failForUse(u"new needs an address or a file");
  }

  void checkTheCheck() const {
    for (const std::string& extra : check->remaining())
      failForUse(extra.starts_with('-') ? u"check has no option " + textOf(extra)
                                        : String(u"check needs exactly one document"));
    if (options.document.empty())
      failForUse(u"check needs a locator document");
    if (options.code && !options.pages.empty())
      failForUse(u"--page and --code exclude each other");
    if (!options.saveTo.empty() && !options.code)
      failForUse(u"--save needs --code");
  }
};

} // namespace

Workbench::Workbench(std::ostream& out, std::ostream& errors, CheckCommand::ClientFactory makeClient,
                     std::istream* input, bool isTerminal)
    : m_out(out), m_errors(errors), m_makeClient(std::move(makeClient)), m_input(input),
      m_isTerminal(isTerminal) {}

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

bool Workbench::runNew(NewCommand::Options options) {
  PlainOutput out(m_out);
  options.ask = options.ask || m_isTerminal;
  if (options.source.name.empty())
    options.source.name = u"My source";
  return NewCommand(out, std::move(options), m_makeClient, m_input).run();
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
  if (*line.make)
    return runNew(line.newOptions);
  if (*line.check && rootElementOf(line.options.document) == u"PriceSource")
    return SourceCheck(out, line.options, m_makeClient).run();
  if (*line.check)
    return CheckCommand(out, line.options, m_makeClient).run();
  if (*line.find) {
    const Arguments texts = line.find->remaining();
    if (texts.size() != 2)
      failForUse(u"find needs a page and a text; put a text of several words in quotation marks");
    const String text = textOf(texts[1]);
    if (!text.trimmed().empty())
      if (const SavedAnswer answer = SavedAnswer::fromFile(texts[0]); !answer.isPage())
        return findInAnswer(out, answer, text);
    return FindCommand(out, texts[0], text).run();
  }
  if (*line.table) {
    const Arguments texts = line.table->remaining();
    if (texts.size() < 2)
      failForUse(u"table needs a page and the texts of one row");
    std::vector<String> cells;
    std::transform(texts.begin() + 1, texts.end(), std::back_inserter(cells), textOf);
    if (const SavedAnswer answer = SavedAnswer::fromFile(texts[0]); !answer.isPage())
      return tableOfAnswer(out, answer, cells);
    return TableCommand(out, texts[0], cells).run();
  }
  const Arguments unknown = line.app.remaining();
  failForUse(unknown.empty() ? String(u"no command given; see --help")
                             : u"unknown command " + textOf(unknown[0]) + u"; see --help");
}

} // namespace Tallymoor
