#include "views/SourceTrialDialog.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"
#include "views/SourceActions.h"
#include "views/SourcesTable.h"
#include "widgets/FormNotes.h"
#include "widgets/FormTextField.h"
#include "widgets/HandlerScope.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(SourceTrialDialog)
SourceTrialDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, SourceTrialDialog::ID_TRY, SourceTrialDialog::onTry),
};

FXIMPLEMENT(SourceTrialDialog, Dialog, SourceTrialDialogMap, ARRAYNUMBER(SourceTrialDialogMap))

namespace {

constexpr FXint WIDTH = 520;
constexpr FXint HEIGHT = 220;

String dayText(const Date& day) {
  return day.toString(DATE_DISPLAY_LOCAL);
}

String numberText(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

String rowText(const Date& day, const ShareValue& value) {
  String text = dayText(day) + u"    " + shortPriceText(value.close);
  if (value.high > 0.0)
    text += u"    high " + shortPriceText(value.high);
  if (value.low > 0.0)
    text += u"    low " + shortPriceText(value.low);
  if (value.volume > 0)
    text += u"    volume " + String::fromLong(value.volume);
  return text + u"\n";
}

String currencyText(const String& currency) {
  return currency.empty() ? u"It does not tell the currency.\n" : u"The currency is " + currency + u".\n";
}

/// What was read, or why nothing was.
String trialText(const String& code, const PriceStatus::Trial& trial) {
  if (trial.failure)
    return u"It gave no price of " + code + u" (" + wordsOf(trial.failure->fault) + u").\n" +
           trial.failure->text + u"\n";
  String text = u"It answered for " + code + u". Compare the figures with those that you know.\n\n";
  if (trial.price) {
    text += u"Current price: " + shortPriceText(trial.price->price);
    text += trial.price->day ? u" of " + dayText(*trial.price->day) + u"\n" : String(u"\n");
  }
  text +=
      currencyText(trial.price && !trial.price->currency.empty() ? trial.price->currency : trial.currency);
  if (trial.days > 0)
    text += u"\nPast days: " + numberText(trial.days) + u". The last ones:\n";
  for (const auto& [day, value] : trial.lastDays)
    text += rowText(day, value);
  if (trial.passedOver > 0)
    text += numberText(trial.passedOver) + u" rows without a day or a price were passed over.\n";
  return text;
}

} // namespace

SourceTrialDialog::SourceTrialDialog(FXWindow* owner, const PriceStatus::OfSource& source)
    : Dialog(owner, u"Try a source", u"Try " + shownName(source)), m_source(source.listed.name) {
  build(source.listed.document ? source.listed.document->tryCode() : String());
  m_trial.emplace(getApp(), [this](const PriceStatus::Trial& trial) { show(trial); });
}

void SourceTrialDialog::build(const String& code) {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  new FXLabel(row, "Code, as the source knows it", nullptr, LAYOUT_CENTER_Y);
  m_code = new FormTextField(row, 14);
  m_code->setText(code);
  m_try = new FXButton(row, "&Try\t\tAsks the source for prices of this code", nullptr, this, ID_TRY,
                       BUTTON_NORMAL);
  const FXint width = std::min(scaledToText(WIDTH), getRoot()->getWidth() * 9 / 10);
  auto* frame =
      new FXHorizontalFrame(contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0,
                            0, width, scaledToText(HEIGHT), 0, 0, 0, 0);
  m_result = new FormNotes(frame, TEXT_READONLY | TEXT_WORDWRAP | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_code);
}

void SourceTrialDialog::create() {
  Dialog::create();
  if (m_code->text().empty())
    showText(u"Type the code of a stock and press Try.");
  else
    onTry(nullptr, 0, nullptr);
}

void SourceTrialDialog::showText(const String& text) {
  m_result->FXText::setText(toFox(text));
}

long SourceTrialDialog::onTry(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SourceTrialDialog::onTry failed.", [this] {
    try {
      begin();
    } catch (const Exception& failure) {
      showText(failure.message());
    }
  });
}

void SourceTrialDialog::begin() {
  m_tried = m_code->text().trimmed();
  if (m_tried.empty())
    throw Exception(u"Type the code of a stock and press Try.");
  if (!TallymoorInternet::Instance().isOnline())
    throw Exception(
        u"The program is offline. Go online first, by the button at the right end of the tool bar.");
  m_trial->start(TallymoorInternet::Instance().priceStatus().beginTrial(m_source, m_tried));
  m_try->disable();
  showText(u"Asking for " + m_tried + u"...");
}

void SourceTrialDialog::show(const PriceStatus::Trial& trial) {
  m_try->enable();
  showText(trialText(m_tried, trial));
  m_hasSucceeded = m_hasSucceeded || !trial.failure;
  TallymoorInternet::Instance().priceStatus().endTrial(m_source, trial);
  if (answerDoubts(trial.doubts))
    begin();
}

/// What the output of a command leaves open. True if the user has answered all of it.
bool SourceTrialDialog::answerDoubts(const std::vector<FormatDoubt>& doubts) {
  SourceList& sources = TallymoorInternet::Instance().priceStatus().sources();
  const ListedSource& source = sources.source(m_source);
  if (doubts.empty() || source.kind != SourceKind::Command)
    return false;
  const auto known = source.answers.find(String());
  CsvAnswers answers = known == source.answers.end() ? CsvAnswers() : known->second;
  if (!askDoubts(m_source, doubts, answers))
    return false;
  sources.setAnswers(m_source, String(), answers);
  return true;
}

} // namespace Tallymoor
