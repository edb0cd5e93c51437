#include "views/WatchlistSettings.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include <algorithm>

namespace Tallymoor::WatchlistSettings {

namespace {

const String EXISTS = u"watchlist exists";

String sectionOf(const String& name) {
  return WATCHLIST_PREFIX + name;
}

} // namespace

std::vector<String> names() {
  std::vector<String> found;
  for (const String& section : Settings::Instance().sections(WATCHLIST_PREFIX))
    if (section.size() > WATCHLIST_PREFIX.size())
      found.push_back(section.substr(WATCHLIST_PREFIX.size()));
  std::sort(found.begin(), found.end());
  return found;
}

bool exists(const String& name) {
  const std::vector<String> all = names();
  return std::find(all.begin(), all.end(), name) != all.end();
}

void add(const String& name) {
  Settings& settings = Settings::Instance();
  settings.writeBool(sectionOf(name), EXISTS, true);
  settings.commit();
}

void remove(const String& name) {
  Settings& settings = Settings::Instance();
  settings.deleteSection(sectionOf(name));
  settings.commit();
}

std::vector<String> codes(const String& name) {
  std::vector<String> found = Settings::Instance().keys(sectionOf(name));
  std::erase(found, EXISTS);
  std::sort(found.begin(), found.end());
  return found;
}

void addCode(const String& name, const String& code) {
  Settings& settings = Settings::Instance();
  settings.writeBool(sectionOf(name), code, true);
  settings.commit();
}

void removeCode(const String& name, const String& code) {
  Settings& settings = Settings::Instance();
  settings.deleteEntry(sectionOf(name), code);
  settings.commit();
}

String cleanCode(const String& text) {
  const String code = text.trimmed();
  return code == EXISTS ? String() : code;
}

} // namespace Tallymoor::WatchlistSettings
