#include "views/PriceOriginDialog.h"
#include "market/LocatorPrices.h"
#include "market/PriceStatus.h"
#include "market/TallymoorInternet.h"
#include "views/SourceActions.h"
#include "widgets/HandlerScope.h"
#include "widgets/ListChoiceDialog.h"

namespace Tallymoor {

FXDEFMAP(PriceOriginDialog)
PriceOriginDialogMap[] = {
    FXMAPFUNCS(SEL_COMMAND, PriceOriginDialog::ID_CHOICE, PriceOriginDialog::ID_LAST_CHOICE,
               PriceOriginDialog::onChoose),
};

FXIMPLEMENT(PriceOriginDialog, Dialog, PriceOriginDialogMap, ARRAYNUMBER(PriceOriginDialogMap))

namespace {

PriceStatus& status() {
  return TallymoorInternet::Instance().priceStatus();
}

/// Made-up prices must not come beside shares that are real.
void useSampleMarket(bool isWanted) {
  if (status().isSampleMarket() != isWanted)
    status().setOn(LocatorPrices::NAME, isWanted);
}

} // namespace

PriceOriginDialog::PriceOriginDialog(FXWindow* owner)
    : Dialog(owner, u"Where do your prices come from?",
             u"Where do your prices come from?\nYou can change this at any time in Tools, Prices.") {
  const std::array<const char*, 4> texts{"The &sample market, to try the program: all its prices are made up",
                                         "A &folder of CSV files, one for each stock",
                                         "A ser&vice on the internet, most with a key of your own",
                                         "&Later: until then no prices are fetched, and you can type them"};
  FXSelector id = ID_CHOICE;
  for (std::size_t i = 0; i < texts.size(); ++i)
    m_choices[i] = new FXRadioButton(contents(), texts[i], this, id++, RADIOBUTTON_NORMAL | JUSTIFY_LEFT);
  m_choices[m_choice]->setCheck(TRUE);
  cancelButton()->hide();
  setFirstFocus(m_choices[m_choice]);
}

FXuint PriceOriginDialog::execute(FXuint placement) {
  const FXuint chosen = Dialog::execute(placement);
  if (chosen == 0)
    guardedHandler(u"PriceOriginDialog::execute failed.", [] { useSampleMarket(false); });
  return chosen;
}

long PriceOriginDialog::onChoose(FXObject*, FXSelector selector, void*) {
  m_choice = static_cast<Choice>(FXSELID(selector) - ID_CHOICE);
  for (std::size_t i = 0; i < m_choices.size(); ++i)
    m_choices[i]->setCheck(i == m_choice);
  return 1;
}

bool PriceOriginDialog::validate() {
  useSampleMarket(m_choice == SAMPLE);
  switch (m_choice) {
  case FOLDER:
    return !addSourceFolder(this).empty();
  case SERVICE:
    return useService();
  default:
    return true;
  }
}

bool PriceOriginDialog::useService() {
  ListChoiceDialog list(this, u"Services", u"Which service do you want to try?", false);
  std::vector<String> names;
  for (const PriceStatus::OfSource& source : status().ofSources())
    if (source.listed.document) {
      names.push_back(source.listed.name);
      list.addListEntry(source.listed.name + (source.needsKey ? u" (with a key)" : u" (without a key)"),
                        nullptr);
    }
  return list.execute() != 0 && switchSourceOn(this, names.at(list.chosenIndexes().front()));
}

} // namespace Tallymoor
