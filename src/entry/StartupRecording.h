#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class GUIPanel;
class SharePortfolioUser;
struct StartupPages;

/// Records the entries that are made in the StartupWizard, by the operations that the menus use. Checks how
/// their days lie to the start of the portfolio.
class StartupRecording {
public:
  /// The pages outlive it.
  explicit StartupRecording(const StartupPages& pages) : m_pages(pages) {}

  /// The day for which the user has entered the first cash.
  const Date& startDate() const { return m_startDate; }
  void setStartDate(const Date& date) { m_startDate = date; }

  /// Records what was typed into the page; false if the user is to change it first.
  bool record(const GUIPanel* page, int stage, SharePortfolioUser& portfolio);

private:
  void recordCash(int stage, SharePortfolioUser& portfolio);
  bool recordPurchase(int stage, SharePortfolioUser& portfolio);
  bool recordDividend(SharePortfolioUser& portfolio);
  bool recordSale(SharePortfolioUser& portfolio);

  const StartupPages& m_pages;
  Date m_startDate;
};

} // namespace Tallymoor
