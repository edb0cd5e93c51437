#include "updates/UpdateInstallation.h"
#include "foundation/ProgramFiles.h"
#include "foundation/Uninterrupted.h"
#include <algorithm>
#include <chrono>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Tallymoor {

namespace fs = std::filesystem;

namespace {

const fs::path OLD_FILES = PREVIOUS_FILES; ///< kept until all is done
const fs::path REFUSED = fs::path(UPDATE_FOLDER) / "refused";
constexpr std::string_view DELETED_MARK = " (deleted)";
constexpr auto POLL = std::chrono::milliseconds(50);

/// The files that wait, the program's own image last: it is replaced when all that it needs is there.
std::vector<std::string> waitingFiles() {
  std::vector<std::string> names;
  for (const auto& entry : retryIfInterrupted([] { return fs::directory_iterator(UPDATE_FOLDER); }))
    if (entry.symlink_status().type() != fs::file_type::directory)
      names.push_back(entry.path().filename());
  const std::string& program = programFileStems().front();
  std::sort(names.begin(), names.end(), [&program](const std::string& left, const std::string& right) {
    return left != program && (right == program || left < right);
  });
  return names;
}

/// A file of this user or of root, not a link, that no other user can write to.
bool isSafeFile(const fs::path& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
         (info.st_uid == ::geteuid() || info.st_uid == 0) && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

void refuse(const std::string& fileName) {
  retryIfInterrupted([] { fs::create_directory(REFUSED); });
  retryIfInterrupted([&] { fs::rename(fs::path(UPDATE_FOLDER) / fileName, REFUSED / fileName); });
}

/// Where a file or link is made before it is renamed to its place: what is left of it goes with the folder.
fs::path fresh(const fs::path& place) {
  return OLD_FILES / (place.filename().string() + ".new");
}

void moveFresh(const fs::path& place) {
  std::error_code failure;
  std::error_code ignored;
  do
    fs::rename(fresh(place), place, failure);
  while (failure == std::errc::interrupted);
  fs::remove(fresh(place), ignored); // a second name of the file in its place already stays after renaming
  if (failure)
    throw fs::filesystem_error("rename", place, failure);
}

/// The file also goes on waiting, so that an installation that is cut off here is taken up again.
void putInPlace(const fs::path& waiting, const std::string& fileName) {
  fs::remove(fresh(fileName));
  fs::create_hard_link(waiting, fresh(fileName));
  moveFresh(fileName);
}

void replaceLink(const fs::path& link, const fs::path& target) {
  fs::remove(fresh(link));
  fs::create_symlink(target, fresh(link));
  moveFresh(link);
}

bool runsImage(const fs::path& process, const std::string& image) {
  std::error_code unreadable;
  std::string running = fs::read_symlink(process / "exe", unreadable);
  if (running.ends_with(DELETED_MARK))
    running.resize(running.size() - DELETED_MARK.size());
  return running == image;
}

bool programRuns(const std::string& image) {
  for (const auto& process : retryIfInterrupted([] { return fs::directory_iterator("/proc"); }))
    if (runsImage(process.path(), image))
      return true;
  return false;
}

} // namespace

bool waitForProgramsEnd(unsigned milliseconds) {
  const std::string image = fs::current_path() / programFileStems().front();
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (programRuns(image)) {
    if (std::chrono::steady_clock::now() >= end)
      return false;
    std::this_thread::sleep_for(POLL);
  }
  return true;
}

void UpdateInstallation::run() {
  try {
    requireOwnFolders();
    if (!moveUpCompleteUpdates())
      throw InstallationFailure("a downloaded file could not be moved");
    retryIfInterrupted([] { fs::remove_all(OLD_FILES); });
    retryIfInterrupted([] { fs::create_directory(OLD_FILES); });
    for (const std::string& fileName : waitingFiles()) {
      const std::string stem = stemOfProgramFile(fileName);
      if (stem.empty() || !isSafeFile(fs::path(UPDATE_FOLDER) / fileName))
        refuse(fileName);
      else
        install(fileName, stem);
    }
  } catch (const fs::filesystem_error& error) {
    undoAll();
    throw InstallationFailure(error.what());
  } catch (const InstallationFailure&) {
    undoAll();
    throw;
  }
  removeWithContents(OLD_FILES); // the files in it are of no more use
}

void UpdateInstallation::requireOwnFolders() const {
  for (const char* folder : {".", UPDATE_FOLDER})
    if (!isOwnFolder(folder))
      throw InstallationFailure("the folder " + fs::absolute(folder).lexically_normal().string() +
                                " is not yours, or others can write to it");
}

void UpdateInstallation::install(const std::string& fileName, const std::string& stem) {
  const fs::path waiting = fs::path(UPDATE_FOLDER) / fileName;
  std::vector<std::string> oldNames =
      stem == programFileStems().front() ? std::vector<std::string>{fileName} : filesWithStem(stem);
  std::erase_if(oldNames, [](const std::string& name) { return !fs::exists(name); });
  if (!oldNames.empty())
    retryIfInterrupted([&] { fs::permissions(waiting, fs::status(oldNames.front()).permissions()); });
  for (const std::string& old : oldNames)
    keepOld(old);
  const bool isNewName = std::find(oldNames.begin(), oldNames.end(), fileName) == oldNames.end();
  step(
      fileName, [&] { putInPlace(waiting, fileName); },
      [=] {
        if (isNewName)
          fs::remove(fileName);
      });
  turnLinks(oldNames, fileName);
  for (const std::string& old : oldNames)
    if (old != fileName)
      step(
          old, [&] { fs::remove(old); }, [] {});
  step(
      fileName, [&] { fs::remove(waiting); }, [=] { fs::create_hard_link(fileName, waiting); });
}

/// A copy, so that the file itself is in its place until the new one takes it.
void UpdateInstallation::keepOld(const std::string& fileName) {
  step(
      fileName, [&] { fs::copy_file(fileName, OLD_FILES / fileName, fs::copy_options::overwrite_existing); },
      [=] { fs::rename(OLD_FILES / fileName, fileName); });
}

void UpdateInstallation::turnLinks(const std::vector<std::string>& oldNames, const std::string& newName) {
  std::vector<fs::path> links;
  if (!retryIfInterrupted([] { return fs::exists(LIBRARY_LINKS); }))
    return;
  for (const auto& entry : retryIfInterrupted([] { return fs::directory_iterator(LIBRARY_LINKS); }))
    if (entry.is_symlink())
      links.push_back(entry.path());
  for (const fs::path& link : links) {
    const fs::path target = fs::read_symlink(link);
    if (std::find(oldNames.begin(), oldNames.end(), target.filename()) != oldNames.end())
      step(
          link, [&] { replaceLink(link, target.parent_path() / newName); },
          [=] { replaceLink(link, target); });
  }
}

void UpdateInstallation::step(const std::string& what, const std::function<void()>& work,
                              std::function<void()> undo) {
  try {
    retryIfInterrupted(work);
  } catch (const fs::filesystem_error& error) {
    throw InstallationFailure(what + ": " + error.code().message());
  }
  m_undo.push_back(std::move(undo));
}

void UpdateInstallation::undoAll() {
  while (!m_undo.empty()) {
    try {
      retryIfInterrupted(m_undo.back());
    } catch (const fs::filesystem_error&) {
      // The others go back nevertheless; the kept file stays where it can be found.
    }
    m_undo.pop_back();
  }
}

} // namespace Tallymoor
