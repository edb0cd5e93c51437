#pragma once
#include "widgets/GUIPanel.h"

namespace Tallymoor {

class FormTextField;
class XMLPortfolios;

/// Asks for the name of a new portfolio.
class ChoosePortfolioPanel : public GUIPanel {
  FXDECLARE(ChoosePortfolioPanel)
public:
  /// The root element of the records, which is only read and outlives the form.
  ChoosePortfolioPanel(FXComposite* parent, const XMLPortfolios& records);

  /// Cleans the name first, and shows what it then is.
  bool validate() override;
  /// Cleaned, once validate() has agreed.
  String name() const;

protected:
  ChoosePortfolioPanel() {}

private:
  bool isTaken(const String& name) const;

  const XMLPortfolios* m_records = nullptr;
  FormTextField* m_name = nullptr;
};

} // namespace Tallymoor
