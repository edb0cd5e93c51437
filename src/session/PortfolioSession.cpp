#include "session/PortfolioSession.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/Settings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "session/ProfileFolders.h"
#include "xml/CountryOfResidence.h"
#include <optional>

namespace Tallymoor {

void PortfolioSession::load(Progress& progress) {
  tidyProfileFolders();
  CountryOfResidence::Instance();
  progress.step(1, u"loading price cache");
  TallymoorInternet::Instance();
  progress.step(1, u"loading portfolio records");
  m_store.load();
}

// When the records could not be saved, that has been told, and the rest mostly has the same cause, as a full
// disk: the next save writes it too, or tells.
void PortfolioSession::save() {
  std::optional<Exception> failure;
  const auto attempt = [&failure](auto step) {
    try {
      withUnforeseenFailures(step);
    } catch (const Exception& exception) {
      if (!failure)
        failure = exception;
    }
  };
  {
    const WaitCursor wait;
    m_user.setStatusText(u"saving portfolio, price cache and registry settings...");
    attempt([] {
      if (TallymoorInternet::exists())
        TallymoorInternet::Instance().save();
    });
    attempt([this] { m_store.save(); });
    attempt([] { Settings::Instance().commit(); });
  }
  if (m_store.lastSaveSucceeded())
    m_user.warningOver(UNSAVED_RECORDS);
  if (failure && m_store.lastSaveSucceeded())
    throw *failure;
}

std::unique_ptr<ImportedPortfolios> PortfolioSession::readImport(const String& file) {
  std::unique_ptr<ImportedPortfolios> imported;
  try {
    const WaitCursor wait;
    withUnforeseenFailures([&] { imported = std::make_unique<ImportedPortfolios>(file); });
  } catch (const Exception& exception) {
    m_user.error(u"Failed to decode the imported portfolios:  " + exception.description() +
                 u"\nNothing was imported from " + file + u", and your portfolios are as they were.");
    return nullptr;
  }
  std::set<String> existing;
  for (const auto& [name, portfolio] : m_store.portfolios())
    existing.insert(name);
  imported->askForReplacements(existing, m_user);
  return imported;
}

} // namespace Tallymoor
