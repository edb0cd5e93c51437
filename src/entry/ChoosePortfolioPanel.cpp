#include "entry/ChoosePortfolioPanel.h"
#include "entry/FormChecks.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "xml/CleanName.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT(ChoosePortfolioPanel, GUIPanel, nullptr, 0)

ChoosePortfolioPanel::ChoosePortfolioPanel(FXComposite* parent, const XMLElement& records)
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
  for (std::size_t i = 0; i < m_records->numSubElements(u"SharePortfolios"); ++i)
    if (textValue(m_records->subElement(u"SharePortfolios", i), u"Name") == name)
      return true;
  return false;
}

String ChoosePortfolioPanel::name() const {
  return m_name->text();
}

} // namespace Tallymoor
