#include "workbench/NewCommand.h"
#include "market/HTTPClient.h"
#include "market/PriceSource.h"
#include "workbench/AddressProposal.h"
#include "workbench/AnswerShow.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/SavedAnswer.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"

namespace Tallymoor {

namespace {

const String UNKNOWN_ADDRESS = u"https://source.example/prices/{CODE}";

} // namespace

NewCommand::NewCommand(PlainOutput& out, Options options, CheckCommand::ClientFactory makeClient,
                       std::istream* input)
    : m_out(out), m_options(std::move(options)), m_makeClient(std::move(makeClient)), m_input(input) {}

bool NewCommand::run() {
  const SavedAnswer found = answer();
  found.show(m_out);
  if (!m_options.saveTo.empty()) {
    writeNewFile(m_options.saveTo, found.bytes());
    m_out.line(u"Saved: " + String(m_options.saveTo.c_str()));
  }
  try {
    return propose(found);
  } catch (const AnswerException& failure) {
    m_out.line(u"No source document can be proposed: " + failure.message() + u".");
    if (found.isPage())
      showHelpForPage();
    return false;
  }
}

SavedAnswer NewCommand::answer() const {
  if (!isAddress(m_options.from))
    return SavedAnswer::fromFile(m_options.from);
  const std::unique_ptr<HTTPClient> client = m_makeClient();
  const String address = String(m_options.from.c_str());
  return SavedAnswer::fetched(*client, address, addressForShow(address, m_options.key), m_options.key);
}

bool NewCommand::propose(const SavedAnswer& answer) {
  FormatProposal proposal = proposeFormat(answer.bytes());
  std::istream* const input = m_options.ask ? m_input : nullptr;
  if (!DoubtQuestions(m_out, m_options.answers, input).settleAll(proposal)) {
    m_out.line();
    m_out.line(u"No document is written before these questions are answered: a wrong answer would give wrong "
               u"prices.");
    return false;
  }
  complete(proposal);
  if (!m_options.source.currency.empty())
    proposal.format.currency = m_options.source.currency;
  const String document = sourceDocument(m_options.source, proposal);
  // What is shown is read by the document itself.
  const PriceSource source = PriceSource::fromText(document.toUTF8());
  const SourcePart part = proposal.isHistory ? SourcePart::History : SourcePart::Current;
  const bool isRead = showAnswer(m_out, answer.bytes(), *requestOf(source, part), part, false);
  m_out.line();
  if (!isRead)
    return false;
  if (m_options.documentTo.empty()) {
    m_out.line(document);
  } else {
    writeNewFile(m_options.documentTo, document.toUTF8());
    m_out.line(u"Written: " + String(m_options.documentTo.c_str()));
  }
  showNotes(proposal);
  return true;
}

/// What the command line leaves out.
void NewCommand::complete(const FormatProposal& proposal) {
  NewSource& source = m_options.source;
  if (isAddress(m_options.from))
    source.address = String(m_options.from.c_str());
  source.address = source.address.empty()
                       ? UNKNOWN_ADDRESS
                       : proposeAddress(source.address, source.tryCode, m_options.key, proposal.isHistory);
  if (source.currency.empty())
    source.currency = proposal.format.currency;
}

void NewCommand::showNotes(const FormatProposal& proposal) const {
  const NewSource& source = m_options.source;
  const auto isCurrency = [](const ColumnPlace& column) { return column.column == AnswerColumn::Currency; };
  if (source.address == UNKNOWN_ADDRESS)
    m_out.line(
        u"Note: the address is not known. Write it into the document, with {CODE} in place of the code.");
  else if (!source.address.contains(u"{CODE"))
    m_out.line(
        u"Note: the address names no code, so it gives the same prices for all. Run this again with --code.");
  if (proposal.isHistory && source.address != UNKNOWN_ADDRESS && !source.address.contains(u"{FROM"))
    m_out.line(u"Note: the address names no range of days, so each answer is all that the source sends.");
  if (source.currency.empty() &&
      std::none_of(proposal.format.columns.begin(), proposal.format.columns.end(), isCurrency))
    m_out.line(u"Note: nobody tells the currency. Give it with --currency, so that prices in another one are "
               u"noticed.");
  m_out.line(u"Compare the figures above with the source before you use the document. The program reads "
             u"documents from "
             u"the folder Config/Sources.");
}

void NewCommand::showHelpForPage() const {
  m_out.line(
      u"A page without such a table can be walked by a locator document: see tallymoor-locator find and "
      u"table.");
}

} // namespace Tallymoor
