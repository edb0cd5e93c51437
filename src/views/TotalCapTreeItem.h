#pragma once
#include "session/OpenPortfolios.h"
#include "views/NodeIcons.h"
#include "views/SharedLimits.h"
#include "widgets/InvestmentTreeItem.h"
#include <functional>
#include <memory>
#include <vector>

namespace Tallymoor {

class PerformanceView;
class Progress;
struct PriceLimits;
class SharePortfolioTreeItem;
class TotalCapPage;
class XMLElement;
class XMLPortfolios;

/// The root of the tree of portfolios: "Total Investment Capital". It makes the node of each open portfolio,
/// and is where portfolios are made, renamed and deleted.
///
/// GUI thread only, under the big mutex. What deletes nodes waits until no handler is running (see
/// HandlerScope).
class TotalCapTreeItem : public InvestmentTreeItem {
  FXDECLARE_ABSTRACT(TotalCapTreeItem)
public:
  enum { ID_NEW_SHARE_PORTFOLIO = 1, ID_LAST };

  /// The portfolios and the root element of the records ("SharePortfolios") outlive the node. With a
  /// progress, each portfolio is a step of it. The capital records are brought up to date later, by
  /// bringNextUpToDate.
  TotalCapTreeItem(InvestmentTree* tree, OpenPortfolios& portfolios, XMLPortfolios& records,
                   const NodeIcons& icons, Progress* progress);
  ~TotalCapTreeItem() override;

  void update() override;
  FXint onLeftClick(FXint x, FXint y) override;
  FXint onRightClick(FXint x, FXint y) override;
  /// Deletes the portfolio of that node for good: the node, its records, and the file of its capital record.
  void removeChild(TreeViewItem* child) override;
  /// Does the next piece of the work that the nodes leave for idle time: brings the record of a portfolio up
  /// to date, or looks at the limits of a stock. False when all is done.
  bool bringNextUpToDate();
  /// All of it at once.
  void bringAllUpToDate();
  /// True when the records of all portfolios were brought up to date: until then the page shows the figures
  /// of those that were, and no total.
  bool isComplete() const;
  /// A record was brought up to date for the first time.
  void recordCame();
  /// A portfolio's figures are others than those that the page was filled with.
  void figuresChanged();

  /// Asks for a name and makes an empty portfolio, whose node is shown.
  void newSharePortfolio();
  /// Gives the portfolio another name, which is cleaned first. The name it has, an empty one or an unknown
  /// old name does nothing; one that is taken is refused with a message.
  void renamePortfolio(const String& oldName, const String& newName);
  /// Whether a portfolio may have that name from now on; tells the user why not.
  bool checkNewName(const String& name) const;
  /// Takes a portfolio whose records stand in the document already, and shows its node. No other one has its
  /// name.
  void openPortfolio(std::unique_ptr<SharePortfolioUser> portfolio);
  /// Rebuilds all nodes from the open portfolios: after some came from elsewhere (an import, the wizard).
  /// The page that was shown stays in sight; with the name of a portfolio, that one is shown instead.
  void reloadPortfolios(const String& showPortfolio = String());

  /// Adds portfolios that came from elsewhere, each in the place of one of the same name, whose capital
  /// record is dropped. Then does what is handed in.
  void takePortfolios(std::vector<std::unique_ptr<XMLElement>> imported,
                      const std::function<void()>& afterwards);

  /// Makes the portfolios those of other records, as one change that can be undone; all views follow. Then
  /// does what is handed in.
  void replaceAll(const String& sentence, std::shared_ptr<XMLPortfolios> others,
                  const std::function<void()>& afterwards);

  /// True once after portfolios were added, removed or renamed or a transaction was made.
  bool takePortfoliosChanged();
  /// A portfolio's records are about to change, or have just changed: until they are filled again, the
  /// figures of all portfolios together stay as they are.
  void transactionMade();

  /// Undoes the last change of the records, or makes the last undone one again; all views follow. Throws
  /// Exception as RecordChanges.
  void undo();
  void redo();
  /// Brings the records back to the state after the change with that number, as RecordChanges; all views
  /// follow. Tells the user when nothing differs.
  void goBackTo(std::uint64_t number);

  /// Null when there is none of that name.
  SharePortfolioTreeItem* portfolioNode(const String& name) const;
  /// All of them, by name.
  std::vector<SharePortfolioTreeItem*> portfolioNodes() const;
  const NodeIcons& icons() const { return m_icons; }
  /// Null when building the node failed.
  PerformanceView* performance();

  /// A typed price counts in every portfolio's record of that day; all views follow.
  void priceTyped(const String& code, const Date& date, double price);
  void pricesCorrected();
  /// Typed limits are the stock's in every portfolio and watchlist; the tables of shares held follow.
  void limitsTyped(const String& code, const PriceLimits& limits);
  /// New holdings of stocks that have limits take them.
  void shareLimitsOfHoldings();

  long onNewSharePortfolio(FXObject*, FXSelector, void*);

protected:
  void makeViews() override;
  void viewsGone() override;
  void freshenViews() override;

private:
  void loadPortfolios(Progress* progress);
  /// Rebuilds the nodes and shows what was shown before.
  void reload(const class TreeState& state);
  void makePortfolio(const String& name);
  void deletePortfolio(const String& name);
  void dropNode(const String& name);
  /// A change of which portfolios there are: the nodes are made anew after it, also when it fails.
  void changePortfolios(const String& sentence, const std::function<void()>& command);
  void stopReading();
  /// Changes the records by the operation, which undoes changes or makes one again. With whole portfolios,
  /// which may come or go or get other names, the nodes are made anew.
  void goOver(bool isOfWholePortfolios, const std::function<void()>& operation);
  void withoutNodes(const std::function<void()>& operation);
  void makeRecordsCurrent();

  OpenPortfolios* m_portfolios = nullptr;
  XMLPortfolios* m_records = nullptr;
  NodeIcons m_icons;
  std::unique_ptr<TotalCapPage> m_views; ///< null until the page is made
  SharedLimits m_sharedLimits;
  bool m_portfoliosChanged = false;
};

} // namespace Tallymoor
