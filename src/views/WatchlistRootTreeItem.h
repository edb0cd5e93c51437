#pragma once
#include "views/NodeIcons.h"
#include "views/WatchlistCommands.h"
#include <functional>
#include <utility>
#include <vector>

namespace Tallymoor {

class InvestmentTree;
class SharePortfolioUser;
class TotalCapTreeItem;
class WatchlistTreeItem;

/// Keeps the tree of watchlists filled: a list of what each portfolio holds, then the user's own lists, each
/// kind by name. In spite of its name it is no node.
///
/// GUI thread only, under the big mutex. What deletes nodes waits until no handler is running (see
/// HandlerScope).
class WatchlistRootTreeItem : public WatchlistCommands {
public:
  /// Makes the nodes. All but the function outlive it: the node of all portfolios, whose lists these are, and
  /// the tree, which has its switcher. buy asks for a portfolio and a purchase and records it.
  WatchlistRootTreeItem(TotalCapTreeItem* totalCapital, InvestmentTree* tree, const NodeIcons& icons,
                        std::function<void()> buy);
  ~WatchlistRootTreeItem() override;
  WatchlistRootTreeItem(const WatchlistRootTreeItem&) = delete;
  WatchlistRootTreeItem& operator=(const WatchlistRootTreeItem&) = delete;

  /// Rebuilds the nodes when the portfolios have changed. The tree does so by itself before its nodes are
  /// updated.
  virtual void update();
  /// Rebuilds the nodes where they are not those of the portfolios and lists that there are. The page that
  /// was shown stays in sight; when it has gone, the first one is shown.
  void refill();
  /// Asks for a name and makes an empty list, whose node is shown; one of that name is only shown.
  void onNew();

  /// False while the work of the start is not done: limits are then looked at later, by checkNextLimit.
  bool isComplete() const;
  /// Of all lists, looks at the next stock whose limits were not looked at since its list was made; false
  /// when there is none.
  bool checkNextLimit();

  InvestmentTree* tree() const { return m_tree; }
  const NodeIcons& icons() const { return m_icons; }
  /// Null when there is none of that name.
  const SharePortfolioUser* portfolio(const String& name) const;
  /// The node of a list of the user's; null when there is none of that name.
  WatchlistTreeItem* watchlist(const String& name) const;

  void buyShares() override;
  void limitsTyped(const String& code, const PriceLimits& limits) override;
  std::optional<double> capitalOf(const String& portfolio) const override;
  Portfolios portfolios() const override;

private:
  /// Whose shares it lists, or what the user called it.
  struct Node {
    bool editable;
    String name;
    bool operator==(const Node&) const = default;
  };

  std::vector<Node> wantedNodes() const;
  std::vector<Node> presentNodes() const;
  void fill();
  void refillNow(const String& show);

  TotalCapTreeItem* m_totalCapital;
  InvestmentTree* m_tree;
  NodeIcons m_icons;
  std::function<void()> m_buy;
};

} // namespace Tallymoor
