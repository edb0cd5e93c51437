#pragma once
#include "foundation/RunTimeSettings.h"
#include "session/OpenPortfolios.h"
#include "widgets/Dialog.h"

namespace Tallymoor {

class FormRows;
class FormTextField;
class NumberField;

/// All settings of the program on three pages, and the upkeep of caches and capital records. Settings are
/// taken when the user accepts; what the buttons of the third page do is done at once. The caller
/// refreshes the views afterwards, whether the dialog was accepted or not.
class OptionsDialog : public Dialog {
  FXDECLARE(OptionsDialog)
public:
  enum {
    ID_RESET_DEFAULTS = Dialog::ID_LAST,
    ID_BLAST_CACHE,
    ID_REFRESH_CAPITAL,
    ID_CHANGE_COUNTRY,
    ID_PRICES_AUTO,
    ID_PRICES_MANUAL,
    ID_FORGET_DELISTED,
    ID_LAST
  };

  /// The portfolios outlive the dialog.
  OptionsDialog(FXWindow* owner, OpenPortfolios& portfolios);

  bool validate() override;

  long onResetDefaults(FXObject*, FXSelector, void*);
  long onBlastCache(FXObject*, FXSelector, void*);
  long onRefreshCapital(FXObject*, FXSelector, void*);
  long onChangeCountry(FXObject*, FXSelector, void*);
  long onPricesAuto(FXObject*, FXSelector, void*);
  long onPricesManual(FXObject*, FXSelector, void*);
  long onForgetDelisted(FXObject*, FXSelector, void*);
  /// The tab key comes to the pages as well: the toolkit's own walk passes over them.
  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  OptionsDialog() {}

private:
  /// Tells what is wrong with a number, which has the focus then.
  bool checkNumbers() const;
  FormRows addPage(FXTabBook* book, const char* title);
  void buildNumbers(FormRows page);
  void buildChoices(FormRows page);
  void buildTrayChoice(FXComposite* parent);
  void buildUpkeep(FormRows page);
  void show(const OperationSettings& settings);
  void showPriceWarnings(bool automatic);
  /// What the widgets say now.
  OperationSettings entered() const;
  String chosenTrayFormat() const;

  OpenPortfolios* m_portfolios = nullptr;
  FXTabBook* m_book = nullptr;
  OperationSettings m_shown; ///< the values that the fields were filled with
  NumberField* m_currentPeriod = nullptr;
  NumberField* m_historicalPeriod = nullptr;
  NumberField* m_splitRatio = nullptr;
  NumberField* m_reverseSplitRatio = nullptr;
  NumberField* m_trendShort = nullptr;
  NumberField* m_trendLong = nullptr;
  FormTextField* m_country = nullptr;
  FXListBox* m_trayFormat = nullptr;
  FXRadioButton* m_pricesAuto = nullptr;
  FXRadioButton* m_pricesManual = nullptr;
  FXCheckButton* m_hideLastYear = nullptr;
};

} // namespace Tallymoor
