#include "workbench/CheckCommand.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/LocatorPrices.h"
#include "market/URLResolver.h"
#include "market/URLVariables.h"
#include "pages/HTMLTag.h"
#include "workbench/LocatorDocument.h"
#include "workbench/NumberRemark.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/TableCheck.h"
#include "workbench/WalkTrace.h"
#include "workbench/WebPage.h"
#include "workbench/WorkbenchFailure.h"
#include <utility>

namespace Tallymoor {

namespace {

const String EXAMPLE_CODE = u"CODE";

const XMLTagLocator& priceLocator(const XMLElement& source) {
  return static_cast<const XMLTagLocator&>(source.subElement(u"TagLocator"));
}

} // namespace

CheckCommand::CheckCommand(PlainOutput& out, Options options, ClientFactory makeClient)
    : m_out(out), m_options(std::move(options)), m_makeClient(std::move(makeClient)) {}

CheckCommand::~CheckCommand() = default;

bool CheckCommand::run() {
  m_document = std::make_unique<LocatorDocument>(m_options.document);
  m_document->show(m_out);
  const XMLElement& source = m_document->source(m_options.domain);
  m_out.line(u"Checked: the source " + inQuotes(source.attribute(u"domain")));
  switch (m_document->kind()) {
  case LocatorDocument::Kind::CurrentPrices:
    return checkPrice(source);
  case LocatorDocument::Kind::HistoricalPrices:
    return checkHistory(source);
  case LocatorDocument::Kind::CodeSearch:
    break;
  }
  return checkSearch(source);
}

URL CheckCommand::address(const XMLElement& part) const {
  const String& code = m_options.code.value_or(EXAMPLE_CODE);
  const auto& locator = static_cast<const XMLURLLocator&>(part.subElement(u"URLLocator"));
  try {
    if (m_document->kind() != LocatorDocument::Kind::HistoricalPrices)
      return URLResolver(&locator)(
          URLVariables(code, true, m_document->kind() == LocatorDocument::Kind::CurrentPrices));
    const int entries = static_cast<const XMLHistoricalPrices&>(part).maxEntries();
    return URLResolver(&locator)(
        LocatorPrices::historyVariables(code, HistoryRange::around(Date(), true, entries)));
  } catch (const HTTPException&) {
    throw WorkbenchFailure(WorkbenchFailure::NOT_READ, u"The parts of the address name no host.");
  } catch (const HTMLException& failure) {
    throw WorkbenchFailure(
        WorkbenchFailure::NOT_READ,
        u"No address can be built: a URLPart has the type MarketCode or DMY, for which the "
        u"program has no value.\n(" +
            failure.message() + u")");
  }
}

std::unique_ptr<WebPage> CheckCommand::pageFor(const XMLElement& part, std::size_t number) {
  const URL url = address(part);
  m_out.line(u"Address: " + url.whole());
  if (!m_options.code && number >= m_options.pages.size()) {
    m_out.line(u"No page to test: give a saved page with --page, or fetch one with --code.");
    return nullptr;
  }
  std::unique_ptr<WebPage> page;
  if (m_options.code) {
    const std::unique_ptr<HTTPClient> client = m_makeClient();
    page = std::make_unique<WebPage>(WebPage::fetched(*client, url));
  } else {
    page = std::make_unique<WebPage>(WebPage::fromFile(m_options.pages[number]));
  }
  page->show(m_out);
  if (m_options.code && number == 0 && !m_options.saveTo.empty()) {
    page->save(m_options.saveTo);
    m_out.line(u"Saved: " + String(m_options.saveTo.c_str()));
  }
  return page;
}

bool CheckCommand::checkPrice(const XMLElement& source) {
  const std::unique_ptr<WebPage> page = pageFor(source, 0);
  if (!page)
    return true;
  if (showPrice(source, *page))
    return true;
  showHelp(*page, u"find");
  return false;
}

bool CheckCommand::showPrice(const XMLElement& source, const WebPage& page) {
  m_out.line();
  m_out.line(u"To the price");
  const HTMLTag* const tag = WalkTrace(priceLocator(source), *page.root()).show(m_out, 1);
  if (tag == nullptr)
    return false;
  m_out.line();
  if (priceLocator(source).format() != VALUE_FORMAT_FLOAT) {
    m_out.line(u"STOPPED: the TagLocator must have format=\"Float\"; without it the program reads no price.");
    return false;
  }
  const String remark = remarkOnNumber(tag->text());
  if (!remark.empty()) {
    m_out.line(u"WRONG: " + remark + u". The program reads no price from it.");
    return false;
  }
  const double price =
      LocatorPrices::readCurrentPrice(static_cast<const XMLCurrentPrice&>(source), page.root());
  m_out.line(u"The price: " + inQuotes(tag->textView()) + u" reads as " + String::fromDouble(price, 4));
  if (price > 0.0)
    return true;
  m_out.line(u"WRONG: this is not a price. The program ignores a price of 0.");
  return false;
}

bool CheckCommand::checkHistory(const XMLElement& source) {
  const int entries = static_cast<const XMLHistoricalPrices&>(source).maxEntries();
  m_out.line(u"Rows on a page: at most " + String::fromLong(entries) + u" (maxEntries)");
  if (entries <= 0)
    m_out.line(u"Note: with this number the program fetches one day at a time.");
  const std::unique_ptr<WebPage> page = pageFor(source, 0);
  if (!page)
    return true;
  const auto& table = static_cast<const XMLTableLocator&>(source.subElement(u"TableLocator"));
  if (TableCheck(m_out, table, page->root(), m_options.allRows).show(TableCheck::Content::PastPrices))
    return true;
  showHelp(*page, u"table");
  return false;
}

bool CheckCommand::checkSearch(const XMLElement& source) {
  bool taken = true;
  const std::size_t count = source.numSubElements(u"Details");
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& part = source.subElement(u"Details", i);
    if (count > 1) {
      m_out.line();
      m_out.line(u"Search page " + numberText(i + 1) + u" of " + numberText(count));
    }
    const std::unique_ptr<WebPage> page = pageFor(part, i);
    if (!page)
      continue;
    const auto& table = static_cast<const XMLTableLocator&>(part.subElement(u"TableLocator"));
    if (TableCheck(m_out, table, page->root(), m_options.allRows).show(TableCheck::Content::StockCodes))
      continue;
    showHelp(*page, u"table");
    taken = false;
  }
  return taken;
}

void CheckCommand::showHelp(const WebPage& page, const char16_t* command) const {
  const bool isTable = String(command) == u"table";
  const String fileName = m_options.code ? String(m_options.saveTo.c_str()) : page.name();
  m_out.line();
  if (fileName.empty())
    m_out.line(u"To continue, save the page: run this again with --save FILE.");
  if (m_document->kind() == LocatorDocument::Kind::CodeSearch && m_options.code)
    m_out.line(u"If the source says that nothing matches, try another text first.");
  m_out.line(String(isTable ? u"To repair the document, copy the texts of one row from the page and run\n"
                            : u"To repair the document, copy the value from the page and run\n") +
             u"  tallymoor-locator " + String(command) + u" " + (fileName.empty() ? u"FILE" : fileName) +
             String(isTable ? u" TEXT TEXT ...\nto get a TableLocator for it."
                            : u" VALUE\nto get the steps to it."));
}

} // namespace Tallymoor
