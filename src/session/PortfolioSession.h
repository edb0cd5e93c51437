#pragma once
#include "session/ImportedPortfolios.h"
#include "session/PortfolioStore.h"
#include <memory>

namespace Tallymoor {

class Progress;
class UserInteraction;

/// The user's open portfolios from the start of the program to its end, with what is loaded and saved
/// together with them: the price cache, the options of the country and the settings. It needs no window.
/// Under the big mutex.
class PortfolioSession {
public:
  /// Key of the warnings that the records on disk are not those in memory.
  static constexpr const char16_t* UNSAVED_RECORDS = u"unsaved records";

  /// The user is asked and told here; must outlive the session.
  explicit PortfolioSession(UserInteraction& user) : m_user(user), m_store(user) {}

  PortfolioStore& store() { return m_store; }

  /// Puts the user's folders in order, then opens the price cache and the portfolios: two steps of the
  /// progress. Records that can't be read are told as PortfolioStore::load does. Throws Exception when there
  /// is nothing to work with.
  void load(Progress& progress);

  /// Saves prices, portfolios and settings. Whatever fails on the way, the rest is saved; then the first
  /// failure is thrown as Exception, unless the records could not be written, which PortfolioStore::save
  /// tells.
  void save();

  /// Reads a file of portfolios, and asks which of the open ones it may replace. Null when the file is not
  /// sound, which the user is told. Nothing has changed yet.
  std::unique_ptr<ImportedPortfolios> readImport(const String& file);

private:
  UserInteraction& m_user;
  PortfolioStore m_store;
};

} // namespace Tallymoor
