#include "shell/PortfolioTransfer.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "shell/ImportChecks.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "xml/DocumentFile.h"
#include "xml/DocumentLimits.h"
#include <algorithm>
#include <filesystem>
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
  const FXString last = toFox(lastTransferFolder());
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

/// The toolkit's own answer has lost what follows a "$" in the name, as if it were a variable.
FXString chosenFile(const FXFileDialog& dialog, const FXTextField* nameField) {
  const FXString typed = nameField ? nameField->getText() : FXString();
  if (typed.empty() || typed[0] == '~')
    return dialog.getFilename();
  return FXPath::simplify(FXPath::isAbsolute(typed) ? typed : dialog.getDirectory() + PATHSEPSTRING + typed);
}

/// Nothing when the user cancelled. Whether there is such a file is left to the caller: the toolkit would
/// look for its own answer.
std::optional<FXString> chooseFile(FXWindow* owner, const char* title) {
  FXFileDialog dialog(owner, title);
  dialog.setPatternList(FILE_PATTERNS);
  dialog.setSelectMode(SELECTFILE_ANY);
  dialog.setDirectory(startFolder());
  // The size that it had last may be from before the texts were made larger.
  dialog.resize(std::max(dialog.getWidth(), scaledToText(500)),
                std::max(dialog.getHeight(), scaledToText(300)));
  dialog.create();
  FXTextField* field = nameField(dialog);
  if (field)
    field->setFocus(); // the toolkit would begin in none, and what is typed would be lost
  ModalLoopScope modal(&dialog);
  if (!dialog.execute())
    return std::nullopt;
  Settings::Instance().writeString(SECTION, FOLDER, fromFox(dialog.getDirectory()));
  return chosenFile(dialog, field);
}

// ---- Checking what was read ----

XMLElement* newRecords() {
  return new XMLPortfolios;
}

void cleanTexts(XMLElement& portfolio) {
  XMLElement& name = portfolio.subElement(u"Name");
  name.setValue(cleanName(name.value()));
  if (name.value().empty())
    throw Exception(u"A portfolio in the file has no usable name.");
  XMLElement& index = portfolio.subElement(u"ComparisonIndex");
  index.setValue(cleanName(index.value()));
}

void checkSize(const String& path) {
  std::error_code unknown; // a file that goes just now is not there to be read either
  const std::uintmax_t size = std::filesystem::file_size(path.toUTF8(), unknown);
  if (!unknown && size > ImportedPortfolios::LARGEST_FILE)
    throw Exception(u"The file is longer than " + inMegabytes(ImportedPortfolios::LARGEST_FILE) +
                    u", far more than any portfolios take.");
}

void checkCount(const XMLElement& records) {
  if (records.numSubElements(u"SharePortfolios") > ImportedPortfolios::MOST_PORTFOLIOS)
    throw Exception(u"The file holds more than " +
                    String::fromLong(static_cast<std::int64_t>(ImportedPortfolios::MOST_PORTFOLIOS)) +
                    u" portfolios.");
}

/// The file's records as the program writes them. What is missing shows only on writing, and must not be
/// found out by the next save of the records.
std::string readAndWritten(const String& path) {
  XMLPortfolios records;
  records.decode(path);
  checkCount(records);
  records.markContentUnsafe(); // names come as the file has them and are cleaned only afterwards
  std::ostringstream stream;
  records.encode(stream);
  return std::move(stream).str();
}

} // namespace

// ---- Import ----

ImportedPortfolios::ImportedPortfolios(const String& path) {
  if (filePresence(path) != FilePresence::RegularFile)
    throw Exception(u"There is no such file: " + path);
  checkSize(path);
  m_records.decode(readAndWritten(path).c_str());
  for (std::size_t i = 0; i < m_records.numSubElements(u"SharePortfolios"); ++i) {
    XMLElement& portfolio = m_records.subElement(u"SharePortfolios", i);
    checkImportedDates(portfolio);
    checkImportedAmounts(portfolio);
    cleanTexts(portfolio);
    m_kept.push_back(&portfolio);
  }
}

void ImportedPortfolios::askForReplacements(const std::set<String>& existing) {
  std::set<String> taken = existing;
  std::erase_if(m_kept, [&taken](const XMLElement* portfolio) {
    const String& name = textValue(*portfolio, u"Name");
    if (taken.contains(name) &&
        !UserInteraction::Instance().question(u"You already have a portfolio called \"" + name +
                                              u"\"\nin your Total Capital. Do you want to replace it with\n" +
                                              u"an imported portfolio?"))
      return true;
    taken.insert(name);
    return false;
  });
}

std::vector<String> ImportedPortfolios::names() const {
  std::vector<String> names;
  for (const XMLElement* portfolio : m_kept)
    names.push_back(textValue(*portfolio, u"Name"));
  return names;
}

std::vector<std::unique_ptr<XMLElement>> ImportedPortfolios::take() const {
  std::vector<std::unique_ptr<XMLElement>> portfolios;
  for (const XMLElement* portfolio : m_kept)
    portfolios.emplace_back(portfolio->clone([]() -> XMLElement* { return new XMLSharePortfolio; }));
  return portfolios;
}

String importSummary(const std::vector<String>& names) {
  constexpr std::size_t MOST_NAMES = 50;
  String text = u"The following share portfolios were imported:\n";
  for (std::size_t i = 0; i < std::min(names.size(), MOST_NAMES); ++i)
    text += (i == 0 ? String() : String(u", ")) + names[i];
  if (names.size() > MOST_NAMES)
    text += u" and " + String::fromLong(static_cast<std::int64_t>(names.size() - MOST_NAMES)) + u" more";
  return text;
}

String chooseImportFile(FXWindow* owner) {
  const auto file = chooseFile(owner, "Import portfolios from:");
  return file ? fromFox(*file) : String();
}

// ---- Export ----

String lastTransferFolder() {
  return Settings::Instance().readString(SECTION, FOLDER);
}

// The folder must be known before there is a temporary in it that the next start may have to remove.
void writeExport(const String& path, XMLPortfolios& records) {
  Settings& settings = Settings::Instance();
  settings.writeString(SECTION, FOLDER, path.substr(0, path.find_last_of(u'/') + 1));
  settings.commitIfPossible();
  saveDocument(path, records, RECORDS_DTD, newRecords);
}

void exportPortfolios(FXWindow* owner, XMLPortfolios& records) {
  auto file = chooseFile(owner, "Export portfolios to:");
  if (!file)
    return;
  if (FXPath::extension(*file).empty())
    file->append(".xml");
  const String name = fromFox(*file);
  UserInteraction& user = UserInteraction::Instance();
  if (FXStat::exists(*file) &&
      !user.question(u"Do you want to overwrite the file\n" + name + u"\nwith your exported portfolios?"))
    return;
  writeExport(name, records);
  user.information(u"Your portfolios have been exported to\n" + name +
                   u"\nThis can be used as a backup, or imported for a different user or computer.");
}

} // namespace Tallymoor
