#pragma once
#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "entry/StockSearchDialog.h"
#include "support/windows/RealKeys.h"
#include "views/PriceOriginDialog.h"
#include "views/WatchlistSettings.h"
#include "widgets/GUIPanel.h"
#include "widgets/GetRatioDialog.h"
#include "widgets/InvestmentTree.h"
#include "widgets/InvestmentTreeItem.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/ProgressDialog.h"
#include "widgets/Table.h"
#include "widgets/Wizard.h"
#include <fxkeys.h>
#include <stdexcept>

namespace Tallymoor {

/// A main window with all features in use: a portfolio "Trading" with purchases, a sale, a dividend and cash,
/// a comparison index, and a watchlist "Miners". Visits every window of the program.
class WindowTour : public ShellTest {
protected:
  /// Called with each open window and its name for messages.
  using Visit = std::function<void(const std::string& name, FXWindow& shell)>;

  WindowTour() {
    for (const char16_t* code : {u"AAA.AX", u"BBB.AX", u"^AORD"}) {
      market().setHistory(code, Date(2025, 9, 1), Date(2026, 3, 2), 1234.5);
      market().setDay(code, Date(2026, 3, 3), 1300.25);
      market().addListing(code, String(u"Long Name of the Company Behind ") + code + u" Limited",
                          u"Australia");
    }
  }

  void SetUp() override {
    ShellTest::SetUp();
    tallymoor().setFocus();
    runUntil([this] { return tallymoor().hasFocus(); });
    whenName("New Portfolio", "Trading");
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
    keepRecords(*tallymoor().store().portfolios().at(u"Trading"));
    whenName("Add New Watchlist", "Miners");
    command(TallymoorWindow::ID_NEW_WATCHLIST);
    for (const char16_t* code : {u"AAA.AX", u"BBB.AX"})
      WatchlistSettings::addCode(u"Miners", code);
    tallymoor().refreshViews(true);
    showTab(PORTFOLIOS);
  }

  static constexpr FXint PORTFOLIOS = 0;
  static constexpr FXint WATCHLISTS = 1;

  void showTab(FXint tab) {
    tallymoor().tabBook()->setCurrent(tab, TRUE);
    letEventsPass();
  }
  InvestmentTree& tree(FXint tab) {
    return tab == PORTFOLIOS ? *tallymoor().portfolioTree() : *tallymoor().watchlistTree();
  }
  std::vector<InvestmentTreeItem*> nodes(FXint tab) {
    std::vector<InvestmentTreeItem*> all;
    for (TreeViewItem* root = tree(tab).firstRoot(); root; root = root->nextSibling())
      addBranch(*root, all);
    return all;
  }
  void showNode(FXint tab, InvestmentTreeItem& node) {
    tree(tab).selectQuietly(&node);
    node.onLeftClick(0, 0);
    letEventsPass();
  }
  std::vector<String> labelsOf(FXint tab) {
    std::vector<String> labels;
    for (InvestmentTreeItem* item : nodes(tab))
      labels.push_back(item->label());
    return labels;
  }
  InvestmentTreeItem& node(FXint tab, const std::string& label) {
    for (InvestmentTreeItem* item : nodes(tab))
      if (item->label().toUTF8() == label)
        return *item;
    throw std::runtime_error("no node " + label);
  }

  /// Visits every window, and the main window with each of its pages.
  void tour(const Visit& visit) {
    visitPages(visit);
    visitMenus(visit);
    visitCommandDialogs(visit);
    visitRegisters(visit);
    visitEditForms(visit);
    visitPrompts(visit);
    visitWizard(visit);
    visitBoxes(visit);
  }

private:
  void whenName(const std::string& form, const std::string& name) {
    whenModal(form, [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
  }
  static void keepRecords(SharePortfolioUser& user) {
    user.portfolio().subElement(u"ComparisonIndex").setValue(u"^AORD");
    user.creditCash(Date(2025, 12, 1), 1234567.89, CASH_EVENT_DEPOSIT, u"DEPOSIT start");
    user.buyShares(u"AAA.AX", {Date(2025, 12, 2), 100, 1200, 30, String()});
    user.buyShares(u"AAA.AX", {Date(2026, 1, 6), 50, 1210, 20, String()});
    user.buyShares(u"BBB.AX", {Date(2026, 1, 12), 200, 1230, 20, String()});
    user.sellShares(u"BBB.AX", {Date(2026, 1, 27), 80, 1250, 20, String()}, true);
    user.receiveDividend({u"AAA.AX", Date(2026, 2, 2), 150, 0.1, 100, 0, 0, String(), 0});
  }
  static void addBranch(TreeViewItem& item, std::vector<InvestmentTreeItem*>& all) {
    all.push_back(static_cast<InvestmentTreeItem*>(&item));
    for (TreeViewItem* child = item.firstChild(); child; child = child->nextSibling())
      addBranch(*child, all);
  }

  /// Visits and cancels the next window, which must have this title.
  void expect(const std::string& title, const Visit& visit, const Step& before = {}) {
    whenModal(title, [this, title, visit, before](FXWindow& window) {
      if (before)
        before(window);
      window.layout(); // The toolkit does this when idle.
      letEventsPass();
      visit(title, window);
      close(window);
    });
  }
  static void close(FXWindow& window) {
    if (auto* popup = dynamic_cast<FXPopup*>(&window))
      popup->popdown();
    else
      window.handle(&window, FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  }

  void visitPages(const Visit& visit) {
    for (const FXint tab : {PORTFOLIOS, WATCHLISTS}) {
      showTab(tab);
      for (InvestmentTreeItem* item : nodes(tab)) {
        showNode(tab, *item);
        visit("the page of " + item->label().toUTF8(), tallymoor());
      }
    }
    showTab(PORTFOLIOS);
    showNode(PORTFOLIOS, *nodes(PORTFOLIOS).front());
    tallymoor().setViewDate(Date(2026, 2, 20));
    tallymoor().warnOnce(
        u"A warning about something that has a long text of many words, which goes on and on", u"Tallymoor",
        u"tour", 1);
    letEventsPass();
    letEventsPass();
    visit("a past day with a warning", tallymoor());
    tallymoor().resetViewDate();
    letEventsPass();
  }
  void visitMenus(const Visit& visit) {
    for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor())) {
      auto* pane = dynamic_cast<FXMenuPane*>(title->getMenu());
      pane->popup(nullptr, 0, 0);
      letEventsPass();
      visit(std::string("the menu ") + title->getText().text(), *pane);
      pane->popdown();
    }
  }
  void visitCommandDialogs(const Visit& visit) {
    const std::pair<FXuint, const char*> dialogs[] = {
        {TallymoorWindow::ID_NEW_PORTFOLIO, "New Portfolio"},
        {TallymoorWindow::ID_NEW_WATCHLIST, "Add New Watchlist"},
        {TallymoorWindow::ID_IMPORT, "Import portfolios from:"},
        {TallymoorWindow::ID_EXPORT, "Export portfolios to:"},
        {TallymoorWindow::ID_REPORT_CUSTOM, "Custom Report"},
        {TallymoorWindow::ID_ABOUT, "About Tallymoor"}};
    for (const auto& [id, title] : dialogs) {
      expect(title, visit);
      command(id);
    }
    for (FXint page = 0; page < 3; ++page) {
      expect("Tallymoor Options", visit,
             [page](FXWindow& dialog) { find<FXTabBook>(dialog)->setCurrent(page, TRUE); });
      command(TallymoorWindow::ID_SETTINGS);
    }
    expect("Prices", visit, [this, visit](FXWindow& dialog) {
      expect("Type a price", visit);
      press(dialog, "Type a price...");
      expect("Stored prices of AAA.AX", visit);
      press(dialog, "History...");
      expect("Source of a stock", visit);
      press(dialog, "Its source...");
      expect("Import prices of AAA.AX", visit);
      press(dialog, "Import...");
      expect("Sources of prices", visit, [this, visit](FXWindow& sources) {
        expect("Try a source", visit);
        press(sources, "Try it...");
      });
      press(dialog, "Sources...");
    });
    command(TallymoorWindow::ID_PRICES);
    tallymoor().store().save(); // makes the copy of the day
    expect("Backups", visit);
    command(TallymoorWindow::ID_BACKUPS);
    expect("History", visit);
    command(TallymoorWindow::ID_HISTORY);
    expect("Told dividends", visit);
    command(TallymoorWindow::ID_TOLD_DIVIDENDS);
    expect("Choose the date", visit);
    click(*tallymoor().viewDateRow()->field());
  }
  void visitRegisters(const Visit& visit) {
    const std::pair<FXuint, const char*> forms[] = {{TallymoorWindow::ID_BUY, "Buy Shares"},
                                                    {TallymoorWindow::ID_SELL, "Sell Shares"},
                                                    {TallymoorWindow::ID_DIVIDENDS, "Receive a dividend"},
                                                    {TallymoorWindow::ID_INTEREST, "Receive interest"},
                                                    {TallymoorWindow::ID_DEPOSIT_CASH, "Deposit cash"},
                                                    {TallymoorWindow::ID_WITHDRAW_CASH, "Withdraw cash"}};
    for (const auto& [id, title] : forms) {
      whenModal("Choose Portfolio", [this, visit](FXWindow& dialog) {
        visit("Choose Portfolio", dialog);
        press(dialog, "Trading");
        press(dialog, "OK");
      });
      expect(title, visit);
      command(id);
    }
  }
  /// Visits the popup of the first table row of a node, and the form that one of its entries opens.
  void visitRowForm(const std::string& label, const std::string& entry, const Visit& visit) {
    showNode(PORTFOLIOS, node(PORTFOLIOS, label));
    Table& table = *find<Table>(*node(PORTFOLIOS, label).page());
    table.setFocus();
    whenModal(entry, [this, label, entry, visit](FXWindow& popup) {
      visit("the popup of a row of " + label, popup);
      for (FXMenuCommand* choice : findAll<FXMenuCommand>(popup))
        if (std::string(choice->getText().text()).starts_with(entry))
          return press(*choice);
      throw std::runtime_error("no entry " + entry);
    });
    whenModal("", [this, entry, visit](FXWindow& form) {
      visit("the form of " + entry, form);
      close(form);
    });
    key(tallymoor(), KEY_F10, SHIFTMASK);
    letEventsPass();
  }
  void visitEditForms(const Visit& visit) {
    visitRowForm("AAA.AX Purchases", "Edit purchase from ", visit);
    visitRowForm("Shares Sold", "Edit", visit);
    visitRowForm("Dividends Received", "Edit", visit);
    visitRowForm("Cash Reserve", "Edit", visit);
    showNode(PORTFOLIOS, node(PORTFOLIOS, "Trading"));
    expect("Portfolio Properties", visit);
    press(tallymoor(), " set index ");
  }
  void visitPrompts(const Visit& visit) {
    PriceOriginDialog origin(&tallymoor());
    expect("Where do your prices come from?", visit);
    origin.execute();
    for (const char16_t* text : {u"Long Name", u"nothing of the kind"}) {
      StockSearchDialog search(&tallymoor(), text, true, false);
      expect("Stock Search", visit);
      search.execute();
    }
    GetRatioDialog split(&tallymoor(), u"Possible share split",
                         u"It appears that the share AAA.AX was split on 3/03/2026.\nHow many new shares did "
                         u"each old one become?",
                         u"  (shares after : shares before)", 100, {5, 2});
    expect("Possible share split", visit);
    split.execute();
    ListChoiceDialog columns(&tallymoor(), u"Choose Columns",
                             u"Select the columns you wish to view on this table.", true);
    for (int i = 0; i < 40; ++i)
      columns.addListEntry(u"A column with a long name", nullptr);
    expect("Choose Columns", visit);
    columns.execute();
    ProgressDialog progress(&tallymoor(), u"Tallymoor startup",
                            u"Please wait while caches and portfolio are loaded.", 5,
                            ProgressDialog::PERCENT_BAR, nullptr);
    progress.show(PLACEMENT_OWNER);
    progress.step(1, u"loading price cache");
    letEventsPass();
    visit("the progress of the start", progress);
    progress.hide();
  }
  void visitWizard(const Visit& visit) {
    whenModal("Tallymoor - Getting Started", [this, visit](FXWindow& window) {
      auto& wizard = dynamic_cast<Wizard&>(window);
      for (GUIPanel* panel : findAll<GUIPanel>(wizard)) {
        wizard.setToPage(panel);
        letEventsPass();
        visit("the wizard's page " + panel->title().toUTF8(), wizard);
      }
      close(wizard);
    });
    command(TallymoorWindow::ID_WIZARD);
  }
  void visitBoxes(const Visit& visit) {
    const std::pair<const char16_t*, std::function<void(const String&)>> boxes[] = {
        {u"There are currently no updates available.", &MainWindow::information},
        {u"Are you sure you want to remove ALL cached prices?\nWARNING! These could take a long time to "
         u"recover.",
         [](const String& text) { MainWindow::question(text); }},
        {u"You should set a reverse split ratio \ndetection value greater than 1.1", &MainWindow::error},
        {u"An error occurred while loading your data.\nBEFORE EXITING, please backup \"Portfolios.xml\"\nand "
         u"\"Portfolios.xml.bak\" from\n/home/someone/.local/share/Brindlecove/Tallymoor/Data/.\nTo recover "
         u"your "
         u"data, either import your portfolio from backup now,\nor replace the data file \"Portfolios.xml\" "
         u"with "
         u"\"Portfolios.xml.bak\"\nin the above directory after exiting.\n",
         &MainWindow::error}};
    for (const auto& [text, show] : boxes) {
      expect(String(text).toUTF8().substr(0, 30), visit);
      show(text);
    }
  }
};

} // namespace Tallymoor
