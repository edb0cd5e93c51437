#pragma once
#include "ShellTest.h"
#include "YearOfTransactionsSheet.h"
#include "views/CashReserveTreeItem.h"
#include "views/DividendsTreeItem.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include "widgets/NumberSpinner.h"
#include <gmock/gmock.h>
#include <optional>

namespace Tallymoor {

/// Actions of a user with one portfolio "Trading": opens forms by menus, buttons and popups, fills them in,
/// and reads the tables.
class YearOfTransactionsTest : public ShellTest {
protected:
  using Open = std::function<void()>;
  using Rows = std::vector<std::vector<std::string>>;

  YearOfTransactionsTest() {
    list(u"ABC.AX", 10.0);
    list(u"XYZ.AX", 4.0);
    list(u"QRS.AX", 1.4);
    list(u"TUV.AX", 22.0);
  }
  void SetUp() override {
    ShellTest::SetUp();
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), portfolioName());
      press(dialog, "OK");
    });
    press(tallymoor(), "New Portfolio");
  }
  virtual std::string portfolioName() const { return "Trading"; }
  void TearDown() override {
    m_nextRun.reset();
    ShellTest::TearDown();
  }

  /// Restarts the program on the saved records.
  void startAgain() {
    leave();
    deleteWindow();
    gateway().restart();
    m_nextRun = makeWindow(&app());
    m_nextRun->create();
    awaitReady(dynamic_cast<TallymoorWindow&>(*m_nextRun));
  }
  TallymoorWindow& run() { return m_nextRun ? dynamic_cast<TallymoorWindow&>(*m_nextRun) : tallymoor(); }

  // ---- The nodes and their tables ----

  SharePortfolioTreeItem& trading() {
    return *run().totalCapital()->portfolioNode(String(portfolioName().c_str()));
  }
  InvestmentTreeItem& heldNode() { return *trading().sharesHeldItem(); }
  InvestmentTreeItem& soldNode() { return *trading().sharesSoldItem(); }
  InvestmentTreeItem& dividendsNode() { return *trading().dividendsItem(); }
  InvestmentTreeItem& cashNode() { return *trading().cashReserveItem(); }
  InvestmentTreeItem& purchasesNode(const std::string& code) {
    for (TreeViewItem* child = heldNode().firstChild(); child; child = child->nextSibling())
      if (child->label().toUTF8() == code + " Purchases")
        return dynamic_cast<InvestmentTreeItem&>(*child);
    throw std::runtime_error("no purchases of " + code);
  }
  static Table& tableOf(InvestmentTreeItem& node) {
    return *dynamic_cast<PortfolioTableTreeItem&>(node).table();
  }
  /// Cells of these columns; "" is the row header.
  static Rows shown(InvestmentTreeItem& node, const std::vector<std::string>& columns) {
    Table& table = tableOf(node);
    Rows rows;
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      rows.emplace_back();
      for (const std::string& column : columns)
        rows.back().push_back(column.empty() ? table.getRowText(row).text() : cell(table, row, column));
    }
    return rows;
  }
  static std::string cell(Table& table, FXint row, const std::string& column) {
    for (const Column* each : table.visibleColumns())
      if (each->title().toUTF8() == column)
        return table.getItemText(row, each->index()).text();
    throw std::runtime_error("no column " + column);
  }
  /// The row that contains this text.
  static FXint rowWith(Table& table, const std::string& text) {
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      if (text == table.getRowText(row).text())
        return row;
      for (const Column* column : table.visibleColumns())
        if (text == table.getItemText(row, column->index()).text())
          return row;
    }
    throw std::runtime_error("no row with " + text);
  }
  /// The value next to a caption of a summary.
  static std::string figure(InvestmentTreeItem& node, const std::string& caption) {
    for (FXLabel* label : findAll<FXLabel>(*node.page()))
      if (label->getText().text() == caption)
        return dynamic_cast<FXLabel&>(*label->getNext()).getText().text();
    throw std::runtime_error("no " + caption);
  }

  // ---- Opening forms ----

  Open byCommand(FXuint id) {
    return [this, id] {
      chooseTrading();
      run().handle(&app(), FXSEL(SEL_COMMAND, id), nullptr);
    };
  }
  Open byButton(const std::string& tip) {
    return [this, tip] {
      chooseTrading();
      press(run(), tip);
    };
  }
  Open byPopup(InvestmentTreeItem& (YearOfTransactionsTest::*node)(), const std::string& entry) {
    return [this, node, entry] { rightClick((this->*node)(), entry); };
  }
  InvestmentTreeItem& tradingNode() { return trading(); }

  /// Opens the form and runs the step in it. `open` must handle earlier windows.
  void enter(const Open& open, const std::string& form, const Step& fill) {
    m_fill = [this, form, fill] { whenModal(form, fill); };
    open();
    letEventsPass();
  }

  // ---- Filling forms ----

  void buy(const Open& open, const std::string& code, const std::string& date, const std::string& number,
           const std::string& price, const std::string& brokerage = "50") {
    enter(open, "Buy Shares", [=, this](FXWindow& form) {
      type(field(form, "Stock code"), code);
      fillTrade(form, "Number bought", number, "Date bought", date, price, brokerage);
      if (brokerage != "50")
        answer("Would you like to make this the default brokerage rate?", "No");
      answer(uncheckedCode, "Yes");
      press(form, "OK");
    });
  }
  void sell(const Open& open, const std::string& code, const std::string& date, const std::string& number,
            const std::string& price) {
    enter(open, "Sell Shares", [=, this](FXWindow& form) {
      chooseCode(form, code);
      fillTrade(form, "Number sold", number, "Date sold", date, price, "50");
      press(form, "OK");
    });
  }
  /// The optional step fills in the rest of the form.
  void dividend(const Open& open, const std::string& code, const std::string& date, const std::string& number,
                const std::string& rate, int franked, const Step& rest = {}) {
    enter(open, "Receive a dividend", [=, this](FXWindow& form) {
      chooseCode(form, code);
      type(field(form, "On Shares Held"), number);
      type(field(form, "Dividend Rate"), rate);
      type(*find<FXTextField>(*find<NumberSpinner>(form)), std::to_string(franked));
      type(field(form, "Date Received"), date);
      if (rest)
        rest(form);
      press(form, "OK");
    });
  }
  Step fromAbroad(const std::string& country, const std::string& tax) {
    return [=, this](FXWindow& form) {
      press(form, "Foreign Div");
      type(*find<FXTextField>(*findAll<FXComboBox>(form).back()), country);
      type(field(form, "Withholding Tax"), tax);
    };
  }
  Step asShares(const std::string& number, const std::string& price) {
    return [=, this](FXWindow& form) {
      press(form, "Dividend reinvestment");
      type(field(form, "Shares received"), number);
      type(field(form, "Share price"), price);
    };
  }
  void cash(const Open& open, const std::string& form, const std::string& date, const std::string& amount,
            const std::string& text) {
    enter(open, form, [=, this](FXWindow& dialog) {
      type(field(dialog, "Amount"), amount);
      type(field(dialog, "Date"), date);
      type(field(dialog, "Description (optional)"), text);
      press(dialog, "OK");
    });
  }

  // ---- Rows ----

  /// Chooses an entry of the popup of the row with this text. The step queues the handling of the window that
  /// opens.
  void fromRow(InvestmentTreeItem& node, const std::string& rowText, const std::string& entry,
               const Open& expected) {
    leftClick(node);
    Table& table = tableOf(node);
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    expected();
    FXHeader& header = *table.getRowHeader();
    const FXint row = rowWith(table, rowText);
    click(header, RIGHT_BUTTON, 5, header.getItemOffset(row) + header.getItemSize(row) / 2);
    letEventsPass();
  }
  /// Fields of the form with the texts to type.
  using Changes = std::vector<std::pair<std::string, std::string>>;
  /// Edits the row in its form. The step queues answers for the boxes after OK.
  void edit(InvestmentTreeItem& node, const std::string& rowText, const std::string& entry,
            const std::string& form, const Changes& changes, const Open& boxes = {}) {
    fromRow(node, rowText, entry, [=, this] {
      whenModal(form, [=, this](FXWindow& dialog) {
        for (const auto& [label, text] : changes)
          type(field(dialog, label), text);
        if (boxes)
          boxes();
        press(dialog, "OK");
      });
    });
  }
  void editCash(const std::string& text, const std::string& date, const Changes& changes) {
    edit(cashNode(), text, "Edit cash transaction from " + date + "...", "Edit cash transaction", changes);
  }
  void editPurchase(const std::string& code, const std::string& date, const Changes& changes,
                    const Open& boxes) {
    edit(purchasesNode(code), date, "Edit purchase from " + date + "...",
         "Edit share purchase for " + code + " on " + date, changes, boxes);
  }
  void editSale(const std::string& number, const std::string& code, const std::string& date,
                const Changes& changes, const Open& boxes = {}) {
    edit(soldNode(), number, "Edit sale of " + code + " from " + date + "...", "Edit share sold on " + date,
         changes, boxes);
  }
  void editDividend(const std::string& code, const std::string& date, const Changes& changes,
                    const Open& boxes = {}) {
    edit(dividendsNode(), date, "Edit dividend for " + code + " on " + date + "...",
         "Edit dividend of " + code + " on " + date, changes, boxes);
  }

  /// Deletes the row: answers the question with Yes and a following message with OK.
  void remove(InvestmentTreeItem& node, const std::string& rowText, const std::string& entry,
              const std::string& question, const std::string& told) {
    fromRow(node, rowText, entry, [=, this] {
      whenModal(question, [this](FXWindow& box) { press(box, "Yes"); });
      if (!told.empty())
        answer(told, "OK");
    });
  }
  void removeCash(const std::string& text) {
    remove(cashNode(), text, deleteEntry,
           "Are you sure you want to delete a record of this cash event? \nThis will affect your Total "
           "Capital!",
           "");
  }
  void removePurchase(const std::string& code, const std::string& date, const std::string& told = "") {
    remove(purchasesNode(code), date, deleteEntry,
           "Continue to delete the share purchase of " + code + " at " + date + "?", told);
  }
  /// Deletes the row and the purchase of its shares.
  void removeSale(const std::string& number, const std::string& code, const std::string& date) {
    fromRow(soldNode(), number, "Delete sale of " + code + " from " + date + "...", [=, this] {
      whenModal("Delete the sale of " + code + " on " + date, [this](FXWindow& dialog) {
        press(dialog, "Delete their purchase too");
        press(dialog, "OK");
      });
    });
  }
  void removeDividend(const std::string& code, const std::string& date, const std::string& told = "") {
    remove(dividendsNode(), date, deleteEntry, "Delete dividend of " + code + " on " + date + "?", told);
  }

  const std::string deleteEntry = "Delete from records!...";
  const std::string uncheckedCode = "You have not checked the stock code by searching for the company.\n"
                                    "Are you sure you want to continue with this stock code?";

  static constexpr FXint RIGHT_BUTTON = RIGHTBUTTON;
  static constexpr FXint ON_TEXT = 2; ///< Result of FXTreeList::hitItem.

  /// Lists a stock with the same price on every day.
  void list(const String& code, double price) {
    market().setHistory(code, Date(2025, 1, 1), Date(2026, 3, 3), price);
    market().setCurrentPrice(code, price);
  }

  void leftClick(InvestmentTreeItem& node) {
    clickNode(node, LEFTBUTTON);
    letEventsPass();
  }
  void clickNode(InvestmentTreeItem& node, FXint button) {
    InvestmentTree& tree = *run().portfolioTree();
    tree.makeItemVisible(&node);
    letEventsPass();
    for (FXint y = 2; y < tree.getHeight(); y += 2)
      for (FXint x = 0; tree.getItemAt(1, y) == &node && x < tree.getWidth(); ++x)
        if (tree.hitItem(&node, x, y) == ON_TEXT)
          return click(tree, button, x, y);
    throw std::runtime_error("the node is out of sight");
  }
  void click(FXWindow& window, FXint button, FXint x, FXint y) {
    const bool left = button == LEFTBUTTON;
    for (const FXuint type : {left ? SEL_LEFTBUTTONPRESS : SEL_RIGHTBUTTONPRESS,
                              left ? SEL_LEFTBUTTONRELEASE : SEL_RIGHTBUTTONRELEASE}) {
      FXEvent event{};
      event.type = type;
      event.win_x = event.last_x = event.click_x = x;
      event.win_y = event.last_y = event.click_y = y;
      window.translateCoordinatesTo(event.root_x, event.root_y, app().getRootWindow(), x, y);
      event.click_count = 1;
      event.code = button;
      window.handle(&app(), FXSEL(type, 0), &event);
    }
  }
  static void chooseCode(FXWindow& form, const std::string& code) {
    auto& box = *find<FXComboBox>(form);
    const FXint index = box.findItem(code.c_str());
    if (index < 0)
      throw std::runtime_error("can't choose " + code);
    box.setCurrentItem(index, TRUE);
  }

private:
  void chooseTrading() {
    whenModal("Choose Portfolio", [this](FXWindow& dialog) {
      press(dialog, portfolioName());
      press(dialog, "OK");
    });
    m_fill();
  }
  void rightClick(InvestmentTreeItem& node, const std::string& entry) {
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    m_fill();
    clickNode(node, RIGHT_BUTTON);
  }
  void fillTrade(FXWindow& form, const std::string& numberLabel, const std::string& number,
                 const std::string& dateLabel, const std::string& date, const std::string& price,
                 const std::string& brokerage) {
    type(field(form, numberLabel), number);
    type(field(form, "Share price"), price);
    type(field(form, "Brokerage paid"), brokerage);
    type(field(form, dateLabel), date);
  }

  Open m_fill; ///< Queues the form's step, after the steps for earlier windows were queued.
  std::unique_ptr<MainWindow> m_nextRun;
};

} // namespace Tallymoor
