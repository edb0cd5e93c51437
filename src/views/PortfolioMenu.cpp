#include "views/PortfolioMenu.h"
#include "books/SharePortfolioUser.h"
#include "views/SharePortfolioTreeItem.h"
#include "widgets/ContextMenu.h"
#include "widgets/TreeView.h"
#include <algorithm>
#include <iterator>

namespace Tallymoor::PortfolioMenu {

namespace {

using Node = SharePortfolioTreeItem;

constexpr Command COMMANDS[] = {
    {Node::ID_DELETE_SHARE_PORTFOLIO, u"onDeleteSharePortfolio", [](Node& node) { node.remove(); }},
    {Node::ID_RENAME_SHARE_PORTFOLIO, u"onRenamePortfolio", [](Node& node) { node.rename(); }},
    {Node::ID_BUY_SHARES, u"onBuyShares", [](Node& node) { node.buyShares(String()); }},
    {Node::ID_SELL_SHARES, u"onSellShares", [](Node& node) { node.sellShares(String()); }},
    {Node::ID_RECEIVE_DIVIDENDS, u"onReceiveDividends", [](Node& node) { node.receiveDividend(); }},
    {Node::ID_RECEIVE_INTEREST, u"onReceiveInterest", [](Node& node) { node.receiveInterest(); }},
    {Node::ID_DEPOSIT_CASH, u"onDepositCash", [](Node& node) { node.depositCash(); }},
    {Node::ID_WITHDRAW_CASH, u"onWithdrawCash", [](Node& node) { node.withdrawCash(); }},
    {Node::ID_PROPERTIES, u"onProperties", [](Node& node) { node.changeProperties(); }},
};

} // namespace

const Command* find(FXuint id) {
  const auto* found = std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                                   [id](const Command& command) { return command.id == id; });
  return found == std::end(COMMANDS) ? nullptr : found;
}

void open(SharePortfolioTreeItem& node, FXint x, FXint y) {
  const String name = node.portfolio().name();
  ContextMenu menu(node.tree(), &node);
  menu.addCommand(u"Buy shares...", Node::ID_BUY_SHARES);
  menu.addCommand(u"Sell shares...", Node::ID_SELL_SHARES);
  menu.addCommand(u"Receive a dividend...", Node::ID_RECEIVE_DIVIDENDS);
  menu.addCommand(u"Receive interest...", Node::ID_RECEIVE_INTEREST);
  menu.addCommand(u"Deposit cash...", Node::ID_DEPOSIT_CASH);
  menu.addCommand(u"Withdraw cash...", Node::ID_WITHDRAW_CASH);
  menu.addSeparator();
  menu.addCommand(String(u"Rename share portfolio ") + name + u"...", Node::ID_RENAME_SHARE_PORTFOLIO);
  menu.addCommand(String(u"Delete share portfolio ") + name + u"...", Node::ID_DELETE_SHARE_PORTFOLIO);
  menu.addSeparator();
  menu.addCommand(u"Set portfolio comparison index...", Node::ID_PROPERTIES);
  menu.run(x, y);
}

} // namespace Tallymoor::PortfolioMenu
