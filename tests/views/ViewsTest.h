#pragma once
#include "books/SharePortfolioUser.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/OpenPortfolios.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "views/CashReserveTreeItem.h"
#include "views/DividendsTreeItem.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "views/TotalsBar.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/InvestmentTree.h"
#include "widgets/PageSwitcher.h"
#include "widgets/TableItem.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"
#include <gmock/gmock.h>
#include <optional>
#include <stdexcept>

namespace Tallymoor {

/// The tree of portfolios in a real window on Tuesday, 3 March 2026, with a simulated exchange behind a web
/// server. runPass sends prices to the views. The country is Australia, whose financial year starts in July.
class ViewsTest : public WindowTest {
protected:
  ViewsTest() {
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    TestProfile::writeFile(profile().configFolder() + u"CountryConfig.xml",
                           "<CountryOptions version=\"1\"><CountryOption Name=\"Australia\" "
                           "FinYearStart=\"1/7/2000\"/></CountryOptions>");
    CountryOfResidence::destroyInstance();
    m_market.emplace();
    m_gateway.emplace();
  }
  ~ViewsTest() override {
    Date::clearFixedDate();
    hideLastFYTransactions = false;
    CountryOfResidence::destroyInstance();
  }

  bool awaitBackgroundWork() override { return GatewayScope::awaitHistory(); }
  void SetUp() override {
    WindowTest::SetUp();
    m_failure = std::make_unique<GuiWakeUp>(&app(), [] { throw Exception(u"test"); });
    auto* splitter = new FXSplitter(mainWindow().contentFrame(), LAYOUT_FILL_X | LAYOUT_FILL_Y);
    m_tree = new InvestmentTree(splitter, FXRGB(230, 240, 230), FXRGB(0, 60, 0));
    m_switcher = new PageSwitcher(splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y);
    m_tree->setSwitcher(m_switcher);
    splitter->setSplit(0, 180);
    splitter->create();
  }
  void TearDown() override {
    m_failure.reset();
    deleteWindow();
    m_portfolios.clear();
    m_gateway.reset();
    WindowTest::TearDown();
  }

  /// Adds an open portfolio with a deposit before the tree is shown.
  SharePortfolioUser& addPortfolio(const String& name, double deposit = 0.0,
                                   const Date& date = Date(2026, 2, 1)) {
    XMLSharePortfolio& element = m_records.portfolios().add();
    element.setPortfolioName(name);
    auto user = std::make_unique<SharePortfolioUser>(element, gatewayPrices());
    if (deposit > 0.0)
      user->creditCash(date, deposit, CASH_EVENT_DEPOSIT, u"DEPOSIT start");
    return *(m_portfolios[name] = std::move(user));
  }
  /// "Trading": 5,000.00 on 1 February; 100 AAA.AX at 10.00 on the 2nd, split 2:1 on the 16th, 50 more
  /// at 6.00 on the 20th. The price is 10.00 before the split, 5.50 until 1 March, then 6.00 and today 6.60.
  SharePortfolioUser& addTrading() {
    priceTrading();
    SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
    user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 10.0, 30.0, String()});
    user.recordAdjustment(u"AAA.AX", Date(2026, 2, 16), 2, false);
    user.buyShares(u"AAA.AX", {Date(2026, 2, 20), 50, 6.0, 20.0, String()});
    return user;
  }
  void priceTrading() {
    market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 2, 13), 10.0);
    market().setHistory(u"AAA.AX", Date(2026, 2, 16), Date(2026, 2, 27), 5.5);
    market().setDay(u"AAA.AX", Date(2026, 3, 2), 6.0);
    market().setDay(u"AAA.AX", Date(2026, 3, 3), 6.6);
  }
  /// Buys a share on 2 February that has the same price on every trading day.
  void buy(SharePortfolioUser& user, const String& code, double number, double price) {
    market().setHistory(code, Date(2026, 1, 20), Date(2026, 3, 3), price);
    user.buyShares(code, {Date(2026, 2, 2), number, price, 0.0, String()});
  }

  /// The records are yet to be brought up to date.
  void makeRoot(const NodeIcons& icons = {}, Progress* progress = nullptr) {
    m_root = new TotalCapTreeItem(m_tree, m_portfolios, m_records, icons, progress);
  }
  TotalCapTreeItem& showTree(const NodeIcons& icons = {}, Progress* progress = nullptr) {
    asHandler([&] {
      makeRoot(icons, progress);
      m_root->bringAllUpToDate();
      m_tree->showFirst();
    });
    settle();
    return *m_root;
  }
  /// Does what a handler of the window does, under the big mutex: prices that come in the background wait.
  template <class Work>
  static void asHandler(const Work& work) {
    const BigMutexLock lock;
    work();
  }
  void settle() {
    mainWindow().recalc();
    letEventsPass();
  }
  /// Changes the view date and updates all views, like the main window.
  void viewDate(const Date& date) {
    asHandler([&] {
      Date::setFixedDate(date);
      m_tree->updateItems();
    });
    settle();
  }

  MarketFixture& market() { return *m_market; }
  InvestmentTree& tree() { return *m_tree; }
  TotalCapTreeItem& root() { return *m_root; }
  XMLPortfolios& records() { return m_records; }
  OpenPortfolios& portfolios() { return m_portfolios; }
  SharePortfolioTreeItem& node(const String& name) {
    SharePortfolioTreeItem* found = root().portfolioNode(name);
    if (!found)
      throw std::runtime_error("no node " + name.toUTF8());
    return *found;
  }
  SharesHeldTreeItem& held(const String& name) { return *node(name).sharesHeldItem(); }
  SharesSoldTreeItem& sold(const String& name = u"Trading") { return *node(name).sharesSoldItem(); }
  DividendsTreeItem& dividends(const String& name = u"Trading") { return *node(name).dividendsItem(); }
  CashReserveTreeItem& cash(const String& name = u"Trading") { return *node(name).cashReserveItem(); }
  SharesHeldTreeItem* purchases(const String& name, const String& code) {
    for (TreeViewItem* child = held(name).firstChild(); child; child = child->nextSibling())
      if (static_cast<SharesHeldTreeItem*>(child)->code() == code)
        return static_cast<SharesHeldTreeItem*>(child);
    return nullptr;
  }
  static std::vector<std::string> childLabels(const TreeViewItem& item) {
    std::vector<std::string> labels;
    for (TreeViewItem* child = item.firstChild(); child; child = child->nextSibling())
      labels.push_back(child->label().toUTF8());
    return labels;
  }

  /// Runs an updater pass on this thread and handles its notifications.
  void runPass() {
    TallymoorInternet::Instance().priceUpdater().runPass();
    letEventsPass();
  }

  /// The cash events of a portfolio.
  ElementList<XMLCashEvent> cashEvents(const String& name = u"Trading") {
    return portfolios()[name]->portfolio().cashEvents();
  }
  XMLCashEvent& cashEntry(std::size_t index) { return cashEvents()[index]; }
  std::size_t numCashEntries() { return cashEvents().size(); }

  /// The text of the bar below a node's table under a column; "none" if the column has no total.
  static std::string total(PortfolioTableTreeItem& item, Column::Function function) {
    const FXLabel* label = item.totalsBar()->total(function);
    return label ? label->getText().text() : "none";
  }

  static FXint columnOf(const Table& table, const String& title) {
    for (const Column* column : table.visibleColumns())
      if (column->title() == title)
        return column->index();
    throw std::runtime_error("no column " + title.toUTF8());
  }
  static std::string cellText(const Table& table, FXint row, const String& title) {
    return table.getItemText(row, columnOf(table, title)).text();
  }
  static FXColor cellColour(const Table& table, FXint row, const String& title) {
    return dynamic_cast<TableItem*>(table.getItem(row, columnOf(table, title)))->colour();
  }
  static std::vector<std::string> titles(const Table& table) {
    std::vector<std::string> all;
    for (const auto& column : table.columns())
      all.push_back(column->title().toUTF8());
    return all;
  }
  /// Cells of a row, from left to right.
  static std::vector<std::string> rowTexts(const Table& table, FXint row) {
    std::vector<std::string> texts;
    for (const Column* column : table.visibleColumns())
      texts.push_back(table.getItemText(row, column->index()).text());
    return texts;
  }
  static std::vector<std::string> rowKeys(const Table& table) {
    std::vector<std::string> keys;
    for (FXint row = 0; row < table.getNumRows(); ++row)
      keys.push_back(table.getRowText(row).text());
    return keys;
  }
  /// Makes a view, and waits for the past prices for which it asks.
  template <class Make>
  auto withHistory(const Make& make) {
    decltype(make()) made{};
    asHandler([&] { made = make(); });
    if (awaitBackgroundWork())
      letEventsPass();
    return made;
  }
  /// The value next to a label of a page.
  std::string figure(InvestmentTreeItem& node, const std::string& caption) {
    std::string found = "no " + caption;
    FXWindow* page = nullptr;
    asHandler([&] { page = node.page(); });
    if (awaitBackgroundWork()) {
      asHandler([&] { node.activate(); }); // a page out of sight shows what has come when it is opened
      letEventsPass();
    }
    for (FXLabel* label : findAll<FXLabel>(*page))
      if (label->getText().text() == caption)
        found = dynamic_cast<FXLabel&>(*label->getNext()).getText().text();
    return found;
  }

  /// Shows the table's page, as for a user who works in it.
  void bringToFront(Table& table) {
    for (FXWindow* window = &table; window; window = window->getParent())
      if (auto* switcher = dynamic_cast<PageSwitcher*>(window->getParent()))
        switcher->showPage(window);
  }
  /// Opens an editor in the cell, types and presses Return.
  void typeInto(Table& table, FXint row, const String& title, const std::string& text) {
    bringToFront(table);
    table.startInput(row, columnOf(table, title));
    auto* editor = find<FXTextField>(table);
    ASSERT_TRUE(editor);
    editor->setText(text.c_str());
    table.acceptInput(TRUE);
  }
  /// Double-clicks the cell.
  void doubleClick(Table& table, FXint row, const String& title) {
    bringToFront(table);
    const FXint column = columnOf(table, title);
    table.setCurrentItem(row, column);
    table.makePositionVisible(row, column);
    letEventsPass();
    const FXHeader& across = *table.getColumnHeader();
    const FXHeader& down = *table.getRowHeader();
    const FXint x = across.getX() + across.getItemOffset(column) + across.getItemSize(column) / 2;
    const FXint y = down.getY() + down.getItemOffset(row) + down.getItemSize(row) / 2;
    for (const FXint count : {1, 2})
      click(table, SEL_LEFTBUTTONPRESS, SEL_LEFTBUTTONRELEASE, LEFTBUTTON, x, y, count);
    letEventsPass();
  }
  /// Right-clicks the row's header and chooses from its popup.
  void chooseFromRow(Table& table, FXint row, const std::string& entry,
                     const std::function<void()>& expected = {}) {
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    if (expected)
      expected(); // Queues the handling of what the command opens.
    rightClickRow(table, row);
    letEventsPass();
  }
  /// The entries of a row's popup, which is then closed.
  std::vector<std::string> popupOfRow(Table& table, FXint row, const std::string& entry) {
    std::vector<std::string> entries;
    whenModal(entry, [&](FXWindow& popup) {
      entries = labels(popup);
      dynamic_cast<FXPopup&>(popup).popdown();
    });
    rightClickRow(table, row);
    return entries;
  }
  void rightClickRow(Table& table, FXint row) {
    bringToFront(table);
    FXHeader& header = *table.getRowHeader();
    click(header, SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON, 5,
          header.getItemOffset(row) + header.getItemSize(row) / 2);
  }
  void choose(InvestmentTreeItem& node, const std::string& entry,
              const std::function<void()>& expected = {}) {
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    if (expected)
      expected(); // Queues the handling of what the command opens.
    clickNode(node, SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
    letEventsPass();
  }
  /// The entries of a popup, which is then closed.
  std::vector<std::string> popupOf(InvestmentTreeItem& node, const std::string& entry) {
    std::vector<std::string> entries;
    whenModal(entry, [&](FXWindow& popup) {
      entries = labels(popup);
      dynamic_cast<FXPopup&>(popup).popdown();
    });
    clickNode(node, SEL_RIGHTBUTTONPRESS, SEL_RIGHTBUTTONRELEASE, RIGHTBUTTON);
    return entries;
  }
  void leftClick(InvestmentTreeItem& node) {
    clickNode(node, SEL_LEFTBUTTONPRESS, SEL_LEFTBUTTONRELEASE, LEFTBUTTON);
    letEventsPass();
  }
  void clickNode(InvestmentTreeItem& node, FXuint press, FXuint release, FXint button) {
    InvestmentTree& tree = *node.investmentTree();
    tree.makeItemVisible(&node);
    letEventsPass();
    for (FXint y = 2; y < tree.getHeight(); y += 2)
      for (FXint x = 0; tree.getItemAt(1, y) == &node && x < tree.getWidth(); ++x)
        if (tree.hitItem(&node, x, y) == ON_TEXT) {
          click(tree, press, release, button, x, y);
          return;
        }
    throw std::runtime_error("the node is out of sight");
  }

  /// When the window is open, its event loop throws Exception "test".
  void failInside(const std::string& titleOrText) {
    whenModal(titleOrText, [this](FXWindow&) { m_failure->wake(); });
  }

  /// Fills in amount and description of a cash form and confirms it.
  void enterCash(const std::string& dialogTitle, const std::string& amount, const std::string& text) {
    whenModal(dialogTitle, [=, this](FXWindow& dialog) {
      EXPECT_EQ(dialogTitle, title(dialog));
      type(field(dialog, "Amount"), amount);
      type(field(dialog, "Description (optional)"), text);
      press(dialog, "OK");
    });
  }

  /// Sends a command to a node like its popup.
  static void command(InvestmentTreeItem& node, FXSelector identifier) {
    EXPECT_EQ(1, node.handle(nullptr, FXSEL(SEL_COMMAND, identifier), nullptr));
  }

  /// Fills in a purchase whose code was not searched for.
  void enterPurchase(const std::string& code, const std::string& number, const std::string& price) {
    whenModal("Buy Shares", [=, this](FXWindow& dialog) {
      if (!code.empty())
        type(field(dialog, "Stock code"), code);
      type(field(dialog, "Number bought"), number);
      type(field(dialog, "Share price"), price);
      answer("You have not checked the stock code by searching for the company.\nAre you sure you want to "
             "continue "
             "with this stock code?",
             "Yes");
      press(dialog, "OK");
    });
  }

private:
  static constexpr FXint ON_TEXT = 2; ///< Result of FXTreeList::hitItem.

  void click(FXWindow& window, FXuint press, FXuint release, FXint button, FXint x, FXint y,
             FXint count = 1) {
    for (const FXuint type : {press, release}) {
      FXEvent event{};
      event.type = type;
      event.win_x = event.last_x = event.click_x = x;
      event.win_y = event.last_y = event.click_y = y;
      window.translateCoordinatesTo(event.root_x, event.root_y, app().getRootWindow(), x, y);
      event.click_count = count;
      event.code = button;
      window.handle(&app(), FXSEL(type, 0), &event);
    }
  }

  std::unique_ptr<GuiWakeUp> m_failure; ///< Throws in the innermost running event loop.
  std::optional<MarketFixture> m_market;
  std::optional<GatewayScope> m_gateway;
  XMLPortfolios m_records;
  OpenPortfolios m_portfolios;
  InvestmentTree* m_tree = nullptr;
  PageSwitcher* m_switcher = nullptr;
  TotalCapTreeItem* m_root = nullptr;
};

} // namespace Tallymoor
