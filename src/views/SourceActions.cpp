#include "views/SourceActions.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "views/SourceTrialDialog.h"
#include "views/SourcesTable.h"
#include "widgets/FileChoice.h"
#include "widgets/GetStringDialog.h"
#include <algorithm>
#include <filesystem>
#include <utility>

namespace Tallymoor {

namespace {

using MarketChange = PriceStatus::MarketChange;

PriceStatus& status() {
  return TallymoorInternet::Instance().priceStatus();
}

UserInteraction& user() {
  return UserInteraction::Instance();
}

PriceStatus::OfSource sourceNamed(const String& name) {
  for (PriceStatus::OfSource& source : status().ofSources())
    if (source.listed.name == name)
      return std::move(source);
  throw Exception(u"There is no source of prices named " + name);
}

String numberText(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

std::vector<PriceFile> filesOf(const String& name) {
  const WaitCursor wait;
  return status().filesOf(name);
}

bool mayChangeMarket(const String& name) {
  switch (status().marketChangeBy(name, true)) {
  case MarketChange::EndsSample:
    return mayEndSample();
  case MarketChange::BeginsSample:
    return user().question(u"The prices of the sample market are made up.\n"
                           u"All prices that were fetched or imported are forgotten, so that they do not\n"
                           u"mix. Prices that you typed stay. Do you want that?");
  default:
    return true;
  }
}

/// A service that was not tried, or lacks its key, cannot be used yet.
bool isToBeTried(const PriceStatus::OfSource& source) {
  return !source.notTried.empty() || (source.listed.kind == SourceKind::Document && !source.listed.document);
}

bool switchOn(const String& name) {
  if (!mayChangeMarket(name))
    return false;
  status().setOn(name, true);
  fetchAfresh();
  return true;
}

/// The wanted name, with a number behind it if another source has it.
String freeName(const String& wanted) {
  const auto sources = status().ofSources();
  const auto isTaken = [&sources](const String& name) {
    return std::ranges::any_of(
        sources, [&name](const PriceStatus::OfSource& source) { return source.listed.name == name; });
  };
  String name = wanted;
  for (int number = 2; isTaken(name); ++number)
    name = wanted + u" " + String::fromLong(number);
  return name;
}

String lastPartOf(const String& path) {
  std::filesystem::path parts = std::filesystem::path(path.toUTF8()).lexically_normal();
  if (!parts.has_filename())
    parts = parts.parent_path();
  return String(parts.filename().c_str());
}

String keyHeading(const PriceStatus::OfSource& source) {
  String text = u"Your key for " + source.listed.name +
                u". It is kept in a file that only you can read,\n"
                u"and sent to this service alone.";
  const PriceSource& document = *source.listed.document;
  for (const String& line : {document.keyHint(), document.keyLink()})
    if (!line.empty())
      text += u"\n" + line;
  if (source.hasKey)
    text += u"\nThere is a key already. What you type replaces it; nothing removes it.";
  return text;
}

bool leavesTheSameOpen(const PriceFile& file, const std::vector<FormatDoubt>& doubts) {
  return std::ranges::equal(file.doubts, doubts, [](const FormatDoubt& left, const FormatDoubt& right) {
    return left.about == right.about && left.choices == right.choices;
  });
}

/// The answers for one file, and for all others that leave the same open if the user wants that.
bool answerFile(const String& name, const PriceFile& file) {
  CsvAnswers answers;
  if (!askDoubts(file.name, file.doubts, answers))
    return false;
  status().sources().setAnswers(name, file.name, answers);
  const auto files = filesOf(name);
  const auto isAlike = [&file](const PriceFile& other) { return leavesTheSameOpen(other, file.doubts); };
  const auto alike = std::ranges::count_if(files, isAlike);
  if (alike == 0 || !user().question(numberText(static_cast<std::size_t>(alike)) +
                                     (alike == 1 ? u" other file leaves" : u" other files leave") +
                                     u" the same open. Does your answer hold there too?"))
    return true;
  for (const PriceFile& other : files)
    if (isAlike(other))
      status().sources().setAnswers(name, other.name, answers);
  return true;
}

String filesText(const std::vector<PriceFile>& files) {
  const auto readable = static_cast<std::size_t>(std::ranges::count_if(
      files, [](const PriceFile& file) { return file.failure.empty() && file.doubts.empty(); }));
  String text = numberText(readable) + u" of " + numberText(files.size()) +
                (files.size() == 1 ? u" file can be read." : u" files can be read.");
  for (const PriceFile& file : files)
    if (!file.failure.empty())
      text += u"\n" + file.name + u": " + file.failure;
    else if (!file.doubts.empty())
      text += u"\n" + file.name + u": " + questionOf(file.doubts.front());
  return text;
}

} // namespace

bool mayEndSample() {
  return !status().isSampleMarket() ||
         user().question(u"Prices come from the sample market now, where they are made up.\n"
                         u"It is switched off with the first source of real prices, and its prices are\n"
                         u"forgotten. Prices that you typed stay. Do you want that?");
}

void fetchAfresh() {
  TallymoorInternet::Instance().forgetFailures();
  TallymoorInternet::Instance().priceUpdater().wakeUp();
}

bool switchSourceOn(FXWindow* owner, const String& name) {
  const PriceStatus::OfSource source = sourceNamed(name);
  if (source.needsKey && !source.hasKey && !enterSourceKey(owner, name))
    return false;
  return isToBeTried(source) ? trySource(owner, name) : switchOn(name);
}

void switchSourceOff(const String& name) {
  status().setOn(name, false);
  fetchAfresh();
}

bool enterSourceKey(FXWindow* owner, const String& name) {
  const PriceStatus::OfSource source = sourceNamed(name);
  if (!source.listed.document)
    throw Exception(u"The source " + name + u" takes no key");
  GetStringDialog dialog(owner, u"Key", keyHeading(source));
  dialog.hideText();
  if (!dialog.execute() || (dialog.text().trimmed().empty() && !source.hasKey))
    return false;
  status().sources().setKey(name, dialog.text());
  if (source.listed.isOn)
    fetchAfresh();
  return true;
}

bool trySource(FXWindow* owner, const String& name) {
  SourceTrialDialog dialog(owner, sourceNamed(name));
  dialog.execute();
  if (sourceNamed(name).listed.isOn)
    return true;
  return dialog.hasSucceeded() &&
         user().question(u"Are the figures right, and is " + name + u" to be used from now on?") &&
         switchOn(name);
}

String addSourceFolder(FXWindow* owner) {
  const String folder = chooseFolder(owner, u"Folder of CSV files");
  if (folder.empty())
    return String();
  String name = freeName(u"Folder " + lastPartOf(folder));
  status().sources().addFolder(name, folder);
  askAboutFiles(name);
  switchOn(name);
  return name;
}

String addSourceCommand(FXWindow* owner) {
  GetStringDialog dialog(owner, u"Command",
                         u"A program of yours that writes past prices as CSV, with its words:\n"
                         u"/home/me/prices.sh {CODE} {FROM:yyyy-MM-dd} {TO:yyyy-MM-dd}");
  if (!dialog.execute())
    return String();
  const std::vector<String> words = commandWords(dialog.text());
  if (words.empty())
    return String();
  String name = freeName(u"Command " + lastPartOf(words.front()));
  status().sources().addCommand(name, words);
  trySource(owner, name);
  return name;
}

void askAboutFiles(const String& name) {
  for (;;) {
    const auto files = filesOf(name);
    const auto open = std::ranges::find_if(files, [](const PriceFile& file) { return !file.doubts.empty(); });
    if (open == files.end() || !answerFile(name, *open))
      return user().information(filesText(files));
  }
}

bool askDoubts(const String& file, const std::vector<FormatDoubt>& doubts, CsvAnswers& answers) {
  for (const FormatDoubt& doubt : doubts) {
    const auto choice = user().chooseFromList(file, questionOf(doubt), doubt.choices);
    if (!choice)
      return false;
    answers[doubt.about] = doubt.choices.at(*choice);
  }
  return true;
}

std::vector<String> commandWords(const String& typed) {
  std::vector<String> words;
  bool isInWord = false;
  bool isQuoted = false;
  for (const char16_t unit : typed) {
    if (!isQuoted && unit == u' ') {
      isInWord = false;
      continue;
    }
    if (!std::exchange(isInWord, true))
      words.emplace_back();
    if (unit == u'"')
      isQuoted = !isQuoted;
    else
      words.back() += unit;
  }
  if (isQuoted)
    throw Exception(u"A quotation mark of the command has no partner");
  return words;
}

} // namespace Tallymoor
