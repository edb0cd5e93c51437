#include "xml/CountryOfResidence.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "xml/SmallDocuments.h"
#include <memory>
#include <optional>
#include <vector>

namespace Tallymoor {

namespace {

const String SECTION = u"Config";
const String COUNTRY_KEY = u"Country";
const String START_KEY = u"FinYearStart";
const String OTHER = u"OTHER";
const String COUNTRY_FOR_OTHER = u"United States";
const String CHOICE_TITLE = u"Country of Residence";
const String CHOICE_PROMPT = u"What is your country of residence for tax purposes?";
const String START_PROMPT = u"Choose the start of your financial\nyear for tax purposes.";
const String OTHER_EXPLAINED = u"Your country of residence for tax purposes has been set to United States.\n"
                               u"If your country is unsupported, it may become an option at a later date,\n"
                               u"and you can change it from the Tools menu.";

/// A leap year, so that the 29th of February stays what it is.
constexpr int ANY_YEAR = 2000;

std::unique_ptr<CountryOfResidence>& theInstance() {
  static std::unique_ptr<CountryOfResidence> instance;
  return instance;
}

std::mutex& instanceMutex() {
  static std::mutex mutex;
  return mutex;
}

Date firstOfJanuary() {
  return Date(ANY_YEAR, 1, 1);
}

/// A document that can't be read counts as one with no countries.
void readOptions(XMLCountryOptions& options) {
  try {
    options.decode(configDirectory(Platform::Instance(), APP_NAME) + COUNTRY_CONFIG_FILE);
  } catch (const Exception&) {
    options.reset();
  }
}

std::optional<Date> dateFrom(const String& text) {
  try {
    return Date(text, DATE_DISPLAY_DMY);
  } catch (const Exception&) {
    return std::nullopt;
  }
}

std::optional<Date> startIn(const XMLCountryOptions& options, const String& country) {
  for (std::size_t i = 0; i < options.numSubElements(u"CountryOptions"); ++i) {
    const XMLElement& option = options.subElement(u"CountryOptions", i);
    if (option.attribute(u"Name") == country)
      return dateFrom(option.attribute(u"FinYearStart"));
  }
  return std::nullopt;
}

std::vector<String> choicesFrom(const XMLCountryOptions& options) {
  std::vector<String> names;
  for (std::size_t i = 0; i < options.numSubElements(u"CountryOptions"); ++i)
    names.push_back(options.subElement(u"CountryOptions", i).attribute(u"Name"));
  names.push_back(OTHER);
  return names;
}

} // namespace

CountryOfResidence& CountryOfResidence::Instance() {
  CountryOfResidence* instance;
  {
    std::lock_guard lock(instanceMutex());
    if (!theInstance())
      theInstance().reset(new CountryOfResidence);
    instance = theInstance().get();
  }
  // Outside the lock: while the user is asked, windows repaint and may come here again.
  instance->askOnce();
  return *instance;
}

void CountryOfResidence::destroyInstance() {
  std::lock_guard lock(instanceMutex());
  theInstance().reset();
}

CountryOfResidence::CountryOfResidence() : m_financialYearStart(firstOfJanuary()) {
  reload();
}

void CountryOfResidence::reload() {
  XMLCountryOptions options;
  readOptions(options);
  use(Settings::Instance().readString(SECTION, COUNTRY_KEY), options);
}

void CountryOfResidence::askOnce() {
  {
    std::lock_guard lock(m_mutex);
    if (m_asked || !m_country.empty() || inBackgroundPass || !UserInteraction::exists())
      return;
    m_asked = true;
  }
  change();
}

void CountryOfResidence::change() {
  XMLCountryOptions options;
  readOptions(options);
  const std::vector<String> names = choicesFrom(options);
  const auto chosen = UserInteraction::Instance().chooseFromList(CHOICE_TITLE, CHOICE_PROMPT, names);
  if (!chosen || *chosen >= names.size())
    return;
  if (*chosen + 1 == names.size()) {
    changeToOther();
    return;
  }
  Settings::Instance().writeString(SECTION, COUNTRY_KEY, names[*chosen]);
  Settings::Instance().deleteEntry(SECTION, START_KEY);
  use(names[*chosen], options);
}

/// A country that is not in the list: the user says when its year starts, and the rules of another stand in.
void CountryOfResidence::changeToOther() {
  UserInteraction& user = UserInteraction::Instance();
  const auto start = user.askDate(CHOICE_TITLE, START_PROMPT, financialYearOf(Date::realToday()));
  if (!start)
    return;
  Settings::Instance().writeString(SECTION, COUNTRY_KEY, COUNTRY_FOR_OTHER);
  Settings::Instance().writeString(SECTION, START_KEY, start->toString(DATE_DISPLAY_DMY));
  set(COUNTRY_FOR_OTHER, *start);
  user.information(OTHER_EXPLAINED);
}

/// The year starts as the user has said, else as the country's option says, else on 1 January. A start that
/// the user gave goes with the next country that is chosen from the list.
void CountryOfResidence::use(const String& country, const XMLCountryOptions& options) {
  std::optional<Date> start = dateFrom(Settings::Instance().readString(SECTION, START_KEY));
  if (!start)
    start = startIn(options, country);
  set(country, start.value_or(firstOfJanuary()));
}

void CountryOfResidence::set(const String& country, const Date& start) {
  std::lock_guard lock(m_mutex);
  m_country = country;
  m_financialYearStart = Date(ANY_YEAR, start.month(), start.day());
}

String CountryOfResidence::country() const {
  std::lock_guard lock(m_mutex);
  return m_country;
}

bool CountryOfResidence::isAustralia() const {
  return country() == DEFAULT_COUNTRY_WITH_FRANKING;
}

Date CountryOfResidence::financialYearStart() const {
  std::lock_guard lock(m_mutex);
  return m_financialYearStart;
}

Date CountryOfResidence::financialYearOf(const Date& day) const {
  const Date start = financialYearStart();
  const Date thisYear(day.year(), start.month(), start.day());
  return thisYear > day ? Date(day.year() - 1, start.month(), start.day()) : thisYear;
}

} // namespace Tallymoor
