#include "shell/OptionsDialog.h"
#include "entry/FormChecks.h"
#include "foundation/Amounts.h"
#include "foundation/Settings.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberField.h"
#include "widgets/TabWalk.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(OptionsDialog)
OptionsDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_RESET_DEFAULTS, OptionsDialog::onResetDefaults),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_BLAST_CACHE, OptionsDialog::onBlastCache),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_REFRESH_CAPITAL, OptionsDialog::onRefreshCapital),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_CHANGE_COUNTRY, OptionsDialog::onChangeCountry),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_PRICES_AUTO, OptionsDialog::onPricesAuto),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_PRICES_MANUAL, OptionsDialog::onPricesManual),
    FXMAPFUNC(SEL_COMMAND, OptionsDialog::ID_FORGET_DELISTED, OptionsDialog::onForgetDelisted),
    FXMAPFUNC(SEL_KEYPRESS, 0, OptionsDialog::onKeyPress),
};

FXIMPLEMENT(OptionsDialog, Dialog, OptionsDialogMap, ARRAYNUMBER(OptionsDialogMap))

namespace {

const String TOTAL_CAPITAL = u"Total Capital";
const String WIDEST_LABEL = u"Longer Exp. Moving Average for Index Trend (days)";
// The largest numbers of minutes and hours whose milliseconds fit into 32 bits.
constexpr std::uint32_t LONGEST_MINUTES = 71582;
constexpr std::uint32_t LONGEST_HOURS = 1193;
constexpr double LEAST_SPLIT_RATIO = 1.1;
constexpr int REAL_DECIMALS = 2;
constexpr FXint FIELD_COLUMNS = 10;
constexpr int MOST_TRAY_ENTRIES_IN_VIEW = 10;

/// The whole number in the field: 0 if there is none, and at most the limit.
std::uint32_t wholeNumber(const NumberField& field, std::uint32_t limit) {
  const double value = field.value();
  if (!(value >= 1.0))
    return 0;
  return value >= limit ? limit : static_cast<std::uint32_t>(value);
}

/// The field shows two decimals only: a value that was not edited keeps its others.
double realNumber(const NumberField& field, double shown) {
  return showsTheSame(field.value(), shown, REAL_DECIMALS) ? shown : field.value();
}

} // namespace

OptionsDialog::OptionsDialog(FXWindow* owner, OpenPortfolios& portfolios)
    : Dialog(owner, u"Tallymoor Options", String()), m_portfolios(&portfolios) {
  m_book = new FXTabBook(contents(), nullptr, 0, LAYOUT_FILL_X | LAYOUT_FILL_Y);
  buildNumbers(addPage(m_book, "  Page 1  "));
  buildChoices(addPage(m_book, "  Page 2  "));
  buildUpkeep(addPage(m_book, "  Page 3  "));
  show(operationSettings());
}

long OptionsDialog::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent& event = *static_cast<FXEvent*>(data);
  return isTab(event) ? walkWithTab(*this, isBackTab(event)) : Dialog::onKeyPress(sender, selector, data);
}

FormRows OptionsDialog::addPage(FXTabBook* book, const char* title) {
  new FXTabItem(book, title);
  auto* page = new FXVerticalFrame(book, FRAME_RAISED | FRAME_THICK | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0,
                                   0, 10, 10, 10, 10, 8, 8);
  FormRows rows(page);
  rows.reserveLabel(WIDEST_LABEL);
  return rows;
}

void OptionsDialog::buildNumbers(FormRows page) {
  const auto add = [&page](const String& label, int decimals) {
    return new NumberField(page.addRow(label), decimals, FIELD_COLUMNS);
  };
  m_currentPeriod = add(u"Current Prices Update Period (minutes)", 0);
  m_historicalPeriod = add(u"Historical Prices Update Period (hours)", 0);
  m_splitRatio = add(u"Detection of Stock Splits, (day multiple)", REAL_DECIMALS);
  m_reverseSplitRatio = add(u"Detection of Reverse Stock Splits, (day multiple)", REAL_DECIMALS);
  m_trendShort = add(u"Shorter Exp. Moving Average for Index Trend (days)", REAL_DECIMALS);
  m_trendLong = add(WIDEST_LABEL, REAL_DECIMALS);
  page.align();
}

void OptionsDialog::buildChoices(FormRows page) {
  FXHorizontalFrame* row = page.addRow(u"Country of Residence for Tax Purposes");
  m_country = new FormTextField(row, FormRows::COLUMNS, nullptr, 0, TEXTFIELD_NORMAL | LAYOUT_CENTER_Y);
  m_country->makeReadOnly();
  m_country->setText(CountryOfResidence::Instance().country());
  new FXButton(row, "change", nullptr, this, ID_CHANGE_COUNTRY, FRAME_RAISED | FRAME_THICK | LAYOUT_CENTER_Y);

  buildTrayChoice(page.addRow(u"Task Tray Popup Summary"));

  row = page.addRow(u"Upper and Lower Price Warnings");
  m_pricesAuto = new FXRadioButton(row, "Auto", this, ID_PRICES_AUTO, RADIOBUTTON_NORMAL | LAYOUT_CENTER_Y);
  m_pricesManual =
      new FXRadioButton(row, "Manual", this, ID_PRICES_MANUAL, RADIOBUTTON_NORMAL | LAYOUT_CENTER_Y);

  row = page.addRow(u"Hide transactions from last FY");
  m_hideLastYear = new FXCheckButton(row, "Hide", nullptr, 0, CHECKBUTTON_NORMAL | LAYOUT_CENTER_Y);
  page.align();
}

void OptionsDialog::buildTrayChoice(FXComposite* parent) {
  m_trayFormat =
      new FXListBox(parent, nullptr, 0, LISTBOX_NORMAL | FRAME_SUNKEN | FRAME_THICK | LAYOUT_CENTER_Y);
  m_trayFormat->appendItem(toFox(TOTAL_CAPITAL));
  for (const auto& [name, portfolio] : *m_portfolios)
    m_trayFormat->appendItem(toFox(name));
  m_trayFormat->setNumVisible(std::min(m_trayFormat->getNumItems(), MOST_TRAY_ENTRIES_IN_VIEW));
}

void OptionsDialog::buildUpkeep(FormRows page) {
  const FXint width = MainWindow::Instance().normalFont()->getTextWidth("Clean ALL") + 20;
  const auto add = [&](const String& label, const char* textAndTip, FXSelector command) {
    new FXButton(page.addRow(label), textAndTip, nullptr, this, command,
                 FRAME_RAISED | FRAME_THICK | LAYOUT_CENTER_Y | LAYOUT_FIX_WIDTH, 0, 0, width);
  };
  add(u"Clean ALL Cached Stock Prices",
      "Clean ALL\tRemoves ALL cached share prices. WARNING! This data can take a long time to recover!",
      ID_BLAST_CACHE);
  add(u"Refresh Capital Records",
      "Refresh\tRecalculates your total capital from records and historical prices for every day since your "
      "records began.",
      ID_REFRESH_CAPITAL);
  add(u"Forget Bad/Delisted Stock Codes",
      "Forget...\tLets you choose stock codes that are marked as delisted, to be re-accessed for financial "
      "data",
      ID_FORGET_DELISTED);
  add(u"Reset Options to Defaults", "Reset", ID_RESET_DEFAULTS);
  page.align();
}

// ---- The settings in the widgets ----

void OptionsDialog::show(const OperationSettings& settings) {
  m_shown = settings;
  m_currentPeriod->setValue(settings.currentPriceUpdateMins);
  m_historicalPeriod->setValue(settings.historicalPriceUpdateHours);
  m_splitRatio->setValue(settings.splitRatioDetect);
  m_reverseSplitRatio->setValue(settings.reverseSplitRatioDetect);
  m_trendShort->setValue(settings.indexTrendShort);
  m_trendLong->setValue(settings.indexTrendLong);
  m_hideLastYear->setCheck(settings.hideLastFYTransactions);
  showPriceWarnings(settings.autoMinMaxPrices);
  const FXint item = m_trayFormat->findItem(toFox(settings.trayFormat));
  m_trayFormat->setCurrentItem(item < 0 ? 0 : item);
}

void OptionsDialog::showPriceWarnings(bool automatic) {
  m_pricesAuto->setCheck(automatic);
  m_pricesManual->setCheck(!automatic);
}

OperationSettings OptionsDialog::entered() const {
  OperationSettings settings;
  settings.currentPriceUpdateMins = wholeNumber(*m_currentPeriod, LONGEST_MINUTES);
  settings.historicalPriceUpdateHours = wholeNumber(*m_historicalPeriod, LONGEST_HOURS);
  settings.splitRatioDetect = realNumber(*m_splitRatio, m_shown.splitRatioDetect);
  settings.reverseSplitRatioDetect = realNumber(*m_reverseSplitRatio, m_shown.reverseSplitRatioDetect);
  settings.indexTrendShort = realNumber(*m_trendShort, m_shown.indexTrendShort);
  settings.indexTrendLong = realNumber(*m_trendLong, m_shown.indexTrendLong);
  settings.autoMinMaxPrices = m_pricesAuto->getCheck() == TRUE;
  settings.hideLastFYTransactions = m_hideLastYear->getCheck() == TRUE;
  settings.trayFormat = chosenTrayFormat();
  return settings;
}

String OptionsDialog::chosenTrayFormat() const {
  return fromFox(m_trayFormat->getItemText(m_trayFormat->getCurrentItem()));
}

bool OptionsDialog::validate() {
  if (!checkNumbers())
    return false;
  writeSettings(entered());
  Settings::Instance().commit();
  return true;
}

bool OptionsDialog::checkNumbers() const {
  const OperationSettings settings = entered();
  const auto refused = [this](bool isWrong, NumberField* field, const char16_t* reason) {
    if (!isWrong)
      return false;
    m_book->setCurrent(0); // where the numbers are
    refuse(*field, reason);
    return true;
  };
  return !refused(settings.currentPriceUpdateMins == 0, m_currentPeriod,
                  u"You cannot set the current price updater to run continuously.\n"
                  u"Please select a value great than zero.") &&
         !refused(settings.historicalPriceUpdateHours == 0, m_historicalPeriod,
                  u"You cannot set the historical price updater to run continuously.\n"
                  u"Please select a value greater than zero.") &&
         !refused(settings.splitRatioDetect < LEAST_SPLIT_RATIO, m_splitRatio,
                  u"You should set a split ratio detection \nvalue greater than 1.1") &&
         !refused(settings.reverseSplitRatioDetect < LEAST_SPLIT_RATIO, m_reverseSplitRatio,
                  u"You should set a reverse split ratio \ndetection value greater than 1.1") &&
         !refused(settings.indexTrendShort < 0.0, m_trendShort,
                  u"The days of the short Index Trend Exp. MA can't be less than zero.") &&
         !refused(settings.indexTrendShort >= settings.indexTrendLong, m_trendShort,
                  u"The short Index Trend Exp. MA but be less than the long Index Trend Exp. MA.");
}

// ---- Commands ----

long OptionsDialog::onResetDefaults(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onResetDefaults failed.", [this] {
    OperationSettings defaults;
    defaults.trayFormat = chosenTrayFormat(); // a choice that has no default
    defaults.autoMinMaxPrices = true;         // the first of the two buttons
    show(defaults);
  });
}

long OptionsDialog::onBlastCache(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onBlastCache failed.", [] {
    if (MainWindow::question(u"Are you sure you want to remove ALL cached prices?\n"
                             u"WARNING! These could take a long time to recover."))
      TallymoorInternet::Instance().clear();
  });
}

// Failures are told under the name of another command: a text that users may know.
long OptionsDialog::onRefreshCapital(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onResetDefaults failed.",
                        [this] { recomputeCapital(*m_portfolios); });
}

long OptionsDialog::onChangeCountry(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onChangeCountry failed.", [this] {
    CountryOfResidence& country = CountryOfResidence::Instance();
    country.change();
    m_country->setText(country.country());
  });
}

long OptionsDialog::onPricesAuto(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onPricesAuto failed.", [this] { showPriceWarnings(true); });
}

long OptionsDialog::onPricesManual(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onPricesManual failed.", [this] { showPriceWarnings(false); });
}

long OptionsDialog::onForgetDelisted(FXObject*, FXSelector, void*) {
  return guardedHandler(u"OptionsDialog::onForgetDelisted failed.", [this] {
    TallymoorInternet& gateway = TallymoorInternet::Instance();
    const std::vector<String> codes = gateway.badCodes();
    if (codes.empty()) {
      MainWindow::information(u"No stock codes are marked as delisted.");
      return;
    }
    ListChoiceDialog dialog(this, u"Remove delisted stock codes",
                            u"Choose the stock codes to uncache so \nthey are no longer marked as delisted.",
                            true);
    for (std::size_t i = 0; i < codes.size() && i < ListChoiceDialog::MOST_ENTRIES; ++i)
      dialog.addListEntry(codes[i], nullptr);
    if (!dialog.execute())
      return;
    for (const String& code : dialog.chosenTexts())
      gateway.clearBadCode(code);
    MainWindow::information(u"The stock codes chosen are no \nlonger marked as delisted.");
  });
}

} // namespace Tallymoor
