#include "entry/PortfolioPropertiesDialog.h"
#include "entry/FormChecks.h"
#include "entry/StockSearchDialog.h"
#include "foundation/BigMutex.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "widgets/GUIPanel.h"
#include "widgets/HandlerScope.h"
#include "widgets/ListChoiceDialog.h"
#include "xml/CleanName.h"
#include <iterator>

namespace Tallymoor {

FXDEFMAP(PortfolioPropertiesDialog)
PortfolioPropertiesDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, PortfolioPropertiesDialog::ID_SEARCH_CODE,
              PortfolioPropertiesDialog::onSearchCode),
    FXMAPFUNC(SEL_CHANGED, PortfolioPropertiesDialog::ID_CODE, PortfolioPropertiesDialog::onCodeTyped),
};

FXIMPLEMENT(PortfolioPropertiesDialog, Dialog, PortfolioPropertiesDialogMap,
            ARRAYNUMBER(PortfolioPropertiesDialogMap))

namespace {

struct CommonIndex {
  const char16_t* label;
  const char16_t* code;
};

constexpr CommonIndex COMMON_INDEXES[] = {
    {u"S&P 500 INDEX (USA) ^GSPC", u"^GSPC"},
    {u"Dow Jones (USA) ^DJI", u"^DJI"},
    {u"NASDAQ (USA) ^IXIC", u"^IXIC"},
    {u"S&P TSX Composite (Canada) ^GSPTSE", u"^GSPTSE"},
    {u"All Ordinaries (Australia) ^AORD", u"^AORD"},
    {u"S&P ASX 200 (Australia) ^AXJO", u"^AXJO"},
    {u"NZSE 50 (New Zealand) ^NZ50", u"^NZ50"},
    {u"DAX (Germany) ^GDAXI", u"^GDAXI"},
    {u"FTSE (UK) ^FTSE", u"^FTSE"},
    {u"CAC 40 (France) ^FCHI", u"^FCHI"},
};

/// The name of a common index; empty for any other code.
String commonName(const String& code) {
  for (const CommonIndex& index : COMMON_INDEXES)
    if (code == index.code)
      return index.label;
  return String();
}

} // namespace

PortfolioPropertiesDialog::PortfolioPropertiesDialog(FXWindow* owner, const String& name,
                                                     const String& indexCode, NameCheck nameCheck)
    : Dialog(owner, u"Portfolio Properties",
             u"Change the name of the portfolio, or the index that it is compared with."),
      m_icons(std::make_unique<FormIcons>(getApp())), m_oldName(name), m_nameCheck(std::move(nameCheck)) {
  buildFields();
  m_name->setText(name);
  m_indexCode->setText(indexCode);
  m_indexName->setText(commonName(indexCode));
  setFirstFocus(m_indexCode);
}

PortfolioPropertiesDialog::~PortfolioPropertiesDialog() = default;

void PortfolioPropertiesDialog::buildFields() {
  FormRows rows(contents());
  m_name = rows.addText(u"Name");
  m_indexCode = rows.addTextWithButton(u"Comparison Index", m_icons->search(),
                                       u"\tSearch for a comparison index\tSearch for a comparison index",
                                       this, ID_SEARCH_CODE);
  m_indexCode->setTarget(this);
  m_indexCode->setSelector(ID_CODE);
  m_indexName = rows.addName(u"Index Name");
  m_indexName->setNumColumns(FormRows::COLUMNS * 3 / 2);
  rows.align();
}

String PortfolioPropertiesDialog::name() const {
  return cleanName(m_name->text());
}

String PortfolioPropertiesDialog::indexCode() const {
  return cleanName(m_indexCode->text());
}

bool PortfolioPropertiesDialog::validate() {
  return GUIPanel::runChecks([this] { return checkName(); });
}

bool PortfolioPropertiesDialog::checkName() {
  if (name().empty())
    return refuse(*m_name, u"You must enter a value.");
  if (name() == m_oldName || m_nameCheck(name()))
    return true;
  putFocus(*m_name);
  return false;
}

long PortfolioPropertiesDialog::onSearchCode(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PortfolioPropertiesDialog::onSearchCode failed.", [this] { chooseIndex(); });
}

void PortfolioPropertiesDialog::chooseIndex() {
  ListChoiceDialog list(this, u"Common Stock Indexes",
                        u"You can choose a common Stock Index,\nor continue on to a search.", false);
  for (const CommonIndex& index : COMMON_INDEXES)
    list.addListEntry(index.label, nullptr, indexCode() == index.code);
  list.addListEntry(u"continue on to a search...", nullptr);
  if (list.execute() == 0)
    return;
  const std::size_t chosen = list.chosenIndexes().front();
  if (chosen == std::size(COMMON_INDEXES)) {
    searchIndex();
    return;
  }
  m_indexCode->setText(COMMON_INDEXES[chosen].code);
  m_indexName->setText(COMMON_INDEXES[chosen].label);
}

void PortfolioPropertiesDialog::searchIndex() {
  if (indexCode().empty()) {
    refuse(*m_indexCode, u"You must enter an index name to search for");
    return;
  }
  StockSearchDialog dialog(this, m_indexCode->text().trimmed(), false, false);
  bool accepted = false;
  {
    // The user may take his time; prices go on meanwhile.
    BigMutexRelease release;
    accepted = dialog.execute() != 0;
  }
  if (!accepted || dialog.code().empty())
    return;
  m_indexCode->setText(cleanName(dialog.code()));
  m_indexName->setText(dialog.name());
}

long PortfolioPropertiesDialog::onCodeTyped(FXObject*, FXSelector, void*) {
  m_indexName->setText(commonName(indexCode()));
  return 1;
}

} // namespace Tallymoor
