#include "session/OpenPortfolios.h"
#include "market/MarketPrices.h"
#include "session/BookQuestions.h"
#include "xml/PortfolioRecords.h"
#include <utility>

namespace Tallymoor {

std::vector<SharePortfolioUser*> listOf(const OpenPortfolios& open, const String& except) {
  std::vector<SharePortfolioUser*> list;
  for (const auto& [name, portfolio] : open)
    if (name != except)
      list.push_back(portfolio.get());
  return list;
}

void renamePortfolio(OpenPortfolios& open, const String& oldName, const String& newName) {
  const auto found = open.find(oldName);
  forgetCashWarning(*found->second);
  found->second->rename(newName); // which may fail, and then changes nothing
  auto entry = open.extract(found);
  entry.key() = newName;
  open.insert(std::move(entry));
}

void removePortfolio(OpenPortfolios& open, XMLPortfolios& records, const String& name) {
  const auto found = open.find(name);
  forgetCashWarning(*found->second);
  const XMLSharePortfolio& ofPortfolio = found->second->portfolio();
  open.erase(found); // first, since it refers to its records
  records.portfolios().remove(ofPortfolio);
}

void addPortfolio(OpenPortfolios& open, XMLPortfolios& records, std::unique_ptr<XMLElement> portfolio) {
  auto& ofPortfolio = elementAs<XMLSharePortfolio>(*portfolio);
  records.addSubElement(portfolio.release(), u"SharePortfolios");
  auto user = std::make_unique<SharePortfolioUser>(ofPortfolio, gatewayPrices());
  SharePortfolioCapitalRecordUser& record = user->capitalRecord();
  record.recordsChangedFrom(record.firstRecordDate());
  open.emplace(ofPortfolio.portfolioName(), std::move(user));
}

} // namespace Tallymoor
