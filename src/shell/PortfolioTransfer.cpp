#include "shell/PortfolioTransfer.h"
#include "foundation/Constants.h"
#include "foundation/Date.h"
#include "foundation/FileReplacement.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/DocumentFile.h"
#include <algorithm>
#include <fx.h>
#include <optional>
#include <sstream>

namespace Tallymoor {

namespace {

constexpr const char* FILE_PATTERNS = "Portfolio Files (*.xml)\nAll Files (*)\n";
const String SECTION = u"Gui Settings";
const String FOLDER = u"TransferFolder"; ///< where the last file was exported to or imported from

// ---- Choosing a file ----

FXString startFolder() {
  const FXString last = toFox(Settings::Instance().readString(SECTION, FOLDER));
  return FXStat::isDirectory(last) ? last : FXSystem::getHomeDirectory();
}

/// The dialog's field for a file's name, which the toolkit keeps to itself.
FXTextField* nameField(FXWindow& window) {
  for (FXWindow* child = window.getFirst(); child; child = child->getNext()) {
    if (auto* field = dynamic_cast<FXTextField*>(child))
      return field;
    if (FXTextField* field = nameField(*child))
      return field;
  }
  return nullptr;
}

/// Nothing when the user cancelled.
std::optional<FXString> chooseFile(FXWindow* owner, const char* title, FXuint mode) {
  FXFileDialog dialog(owner, title);
  dialog.setPatternList(FILE_PATTERNS);
  dialog.setSelectMode(mode);
  dialog.setDirectory(startFolder());
  // The size that it had last may be from before the texts were made larger.
  dialog.resize(std::max(dialog.getWidth(), scaledToText(500)),
                std::max(dialog.getHeight(), scaledToText(300)));
  dialog.create();
  if (FXTextField* field = nameField(dialog))
    field->setFocus(); // the toolkit would begin in none, and what is typed would be lost
  ModalLoopScope modal(&dialog);
  if (!dialog.execute())
    return std::nullopt;
  Settings::Instance().writeString(SECTION, FOLDER, fromFox(dialog.getDirectory()));
  return dialog.getFilename();
}

// ---- Checking what was read ----

XMLElement* newRecords() {
  return new XMLPortfolios;
}

/// Calls the operation for each element under the name.
template <class Operation>
void forEach(const XMLElement& parent, std::u16string_view name, Operation operation) {
  for (std::size_t i = 0; i < parent.numSubElements(name); ++i)
    operation(parent.subElement(name, i));
}

void checkDate(const XMLElement& event, std::u16string_view name) {
  Date(textValue(event, name), DATE_DISPLAY_DMY);
}

/// A day that can't be read would make the whole portfolio unusable.
void checkTrade(const XMLElement& event) {
  checkDate(event, u"BuyDate");
  forEach(event, u"Adjustments", [](const XMLElement& adjustment) { checkDate(adjustment, u"StartDate"); });
}

void checkDates(const XMLElement& portfolio) {
  forEach(portfolio.subElement(u"HeldShares"), u"HeldShares",
          [](const XMLElement& share) { forEach(share, u"BuyEvents", checkTrade); });
  forEach(portfolio.subElement(u"SoldShares"), u"SoldShares", [](const XMLElement& share) {
    forEach(share, u"SellEvents", [](const XMLElement& event) {
      checkTrade(event);
      checkDate(event, u"SellDate");
    });
  });
  forEach(portfolio.subElement(u"Dividends"), u"DividendEvents",
          [](const XMLElement& event) { checkDate(event, u"ReceiveDate"); });
  forEach(portfolio.subElement(u"CashReserve"), u"CashEvents",
          [](const XMLElement& event) { checkDate(event, u"Date"); });
}

void cleanTexts(XMLElement& portfolio) {
  XMLElement& name = portfolio.subElement(u"Name");
  name.setValue(cleanName(name.value()));
  if (name.value().empty())
    throw Exception(u"A portfolio in the file has no usable name.");
  XMLElement& index = portfolio.subElement(u"ComparisonIndex");
  index.setValue(cleanName(index.value()));
}

/// What is missing shows only on writing, and must not be found out by the next save of the records.
void checkCanBeSaved(XMLElement& records) {
  std::stringstream document;
  records.encode(document);
  XMLPortfolios again;
  again.decode(document.str().c_str());
}

} // namespace

// ---- Import ----

ImportedPortfolios::ImportedPortfolios(const String& path) {
  if (filePresence(path) != FilePresence::RegularFile)
    throw Exception(u"There is no such file: " + path);
  XMLPortfolios records;
  records.decode(path);
  checkCanBeSaved(records);
  forEach(records, u"SharePortfolios", [this](const XMLElement& portfolio) {
    checkDates(portfolio);
    m_portfolios.emplace_back(portfolio.clone([]() -> XMLElement* { return new XMLSharePortfolio; }));
    cleanTexts(*m_portfolios.back());
  });
}

void ImportedPortfolios::askForReplacements(const std::set<String>& existing) {
  std::set<String> taken = existing;
  std::vector<std::unique_ptr<XMLElement>> kept;
  for (auto& portfolio : m_portfolios) {
    const String name = textValue(*portfolio, u"Name");
    if (taken.contains(name) &&
        !UserInteraction::Instance().question(u"You already have a portfolio called \"" + name +
                                              u"\"\nin your Total Capital. Do you want to replace it with\n" +
                                              u"an imported portfolio?"))
      continue;
    taken.insert(name);
    kept.push_back(std::move(portfolio));
  }
  m_portfolios = std::move(kept);
}

std::vector<String> ImportedPortfolios::names() const {
  std::vector<String> names;
  for (const auto& portfolio : m_portfolios)
    names.push_back(textValue(*portfolio, u"Name"));
  return names;
}

std::vector<std::unique_ptr<XMLElement>> ImportedPortfolios::take() {
  return std::move(m_portfolios);
}

String importSummary(const std::vector<String>& names) {
  String text = u"The following share portfolios were imported:\n";
  for (std::size_t i = 0; i < names.size(); ++i)
    text += (i == 0 ? String() : String(u", ")) + names[i];
  return text;
}

String chooseImportFile(FXWindow* owner) {
  const auto file = chooseFile(owner, "Import portfolios from:", SELECTFILE_EXISTING);
  return file ? fromFox(*file) : String();
}

// ---- Export ----

void exportPortfolios(FXWindow* owner, XMLPortfolios& records) {
  auto file = chooseFile(owner, "Export portfolios to:", SELECTFILE_ANY);
  if (!file)
    return;
  if (FXPath::extension(*file).empty())
    file->append(".xml");
  const String name = fromFox(*file);
  UserInteraction& user = UserInteraction::Instance();
  if (FXStat::exists(*file) &&
      !user.question(u"Do you want to overwrite the file\n" + name + u"\nwith your exported portfolios?"))
    return;
  saveDocument(name, records, RECORDS_DTD, newRecords);
  user.information(u"Your portfolios have been exported to\n" + name +
                   u"\nThis can be used as a backup, or imported for a different user or computer.");
}

} // namespace Tallymoor
