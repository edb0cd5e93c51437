#include "entry/ChoosePortfolioPanel.h"
#include "entry/FormChecks.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "xml/CleanName.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(ChoosePortfolioPanel, GUIPanel, nullptr, 0)

ChoosePortfolioPanel::ChoosePortfolioPanel(FXComposite* parent, const XMLPortfolios& records)
    : GUIPanel(parent, u"Choose a portfolio name", u"Enter the name of a new portfolio to set up"),
      m_records(&records) {
  FormRows rows(this);
  m_name = rows.addText(u"Portfolio name");
}

bool ChoosePortfolioPanel::validate() {
  return runChecks([this] {
    const String cleaned = cleanName(m_name->text());
    m_name->setText(cleaned);
    if (cleaned.empty())
      return refuse(*m_name, u"You must enter a portfolio name!");
    return !isTaken(cleaned) || refuse(*m_name, u"A portfolio with that name already exists.");
  });
}

bool ChoosePortfolioPanel::isTaken(const String& name) const {
  const auto portfolios = m_records->portfolios();
  return std::any_of(portfolios.begin(), portfolios.end(), [&name](const XMLSharePortfolio& portfolio) {
    return portfolio.portfolioName() == name;
  });
}

String ChoosePortfolioPanel::name() const {
  return m_name->text();
}

} // namespace Tallymoor
