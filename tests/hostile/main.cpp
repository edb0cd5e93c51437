// hostile_reader: reads documents by a chosen way into the program and prints the results.
//   hostile_reader SOUND pairs        reads lines "WAY DOCUMENT" from the standard input
//   hostile_reader SOUND cuts WAY DOCUMENT
//
// SOUND is the folder of the valid documents. "pairs" uses a process per document and prints a line of fields
// separated by tabs: way, document, "read", "refused" or "crashed", processor time in milliseconds, growth of
// the peak memory in kilobytes, changes of the program's data, and the message. The calls
// access("/hostile/begin") and access("/hostile/end") mark the reading in a trace of system calls.
//
// "cuts" reads every prefix of a document (every eleventh in the short form) in one process and prints a
// line: way, number of prefixes, how many were refused, how many changed any data.
#include "DocumentServer.h"
#include "Way.h"
#include "support/WholeCounts.h"
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <malloc.h>
#include <map>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr std::size_t STEP_OF_SHORT_FORM = 11; ///< Bytes between two cuts.

double processorMilliseconds() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// A field of /proc/self/status, in kilobytes.
long statusField(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":"))
      return std::stol(line.substr(name.size() + 1));
  throw std::runtime_error("the process has no " + name);
}

/// Resets the peak to the current memory use, which is returned.
long resetMemoryPeak() {
  ::malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
  return statusField("VmRSS");
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

using Contents = std::map<std::string, std::size_t>;

/// A hash per file of the profile.
Contents contentsOf(const std::string& folder) {
  Contents contents;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && !entry.is_symlink())
      contents[entry.path()] = std::hash<std::string>()(contentOf(entry.path()));
  return contents;
}

/// Empty if no file was lost or changed. Only a document that was read may add files.
std::string changeIn(const Contents& before, const Contents& after, bool mayAdd) {
  for (const auto& [path, hash] : before) {
    const auto found = after.find(path);
    if (found == after.end() || found->second != hash)
      return path;
  }
  return after.size() == before.size() || mayAdd ? "" : "a new file";
}

/// A summary of all of the program's data.
struct Data {
  explicit Data(Way& way) : files(contentsOf(way.folder())), state(way.state()) {}
  std::string changedUntil(const Data& after, const Outcome& outcome) const {
    if (!outcome.read && state != after.state)
      return "data in memory";
    return changeIn(files, after.files, outcome.read);
  }
  Contents files;
  std::string state;
};

std::string onOneLine(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ')
      c = ' ';
  return text;
}

void readOne(const std::string& name, Way& way, const std::string& document) {
  way.start();
  way.place(document);
  const Data before(way);
  const long memory = resetMemoryPeak();
  const double time = processorMilliseconds();
  (void)::access("/hostile/begin", F_OK);
  const Outcome outcome = way.read();
  (void)::access("/hostile/end", F_OK);
  const double taken = processorMilliseconds() - time;
  const long grown = statusField("VmHWM") - memory;
  const std::string change = before.changedUntil(Data(way), outcome);
  std::printf("%s\t%s\t%s\t%.0f\t%ld\t%s\t%s\n", name.c_str(), document.c_str(),
              outcome.read ? "read" : "refused", taken, grown, change.c_str(),
              onOneLine(outcome.message).c_str());
}

int readPairs(const std::string& sound) {
  const DocumentServer server;
  std::string wayName;
  std::unique_ptr<Way> way;
  for (std::string name, document; std::cin >> name >> document;) {
    if (name != wayName) {
      way.reset(); // Only one profile may exist.
      way = makeWay(name, sound, server.port());
      wayName = name;
    }
    way->restore();
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
      ::alarm(60);
      readOne(name, *way, document);
      std::fflush(stdout);
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
      std::printf("%s\t%s\tcrashed\t0\t0\t\tstatus %d\n", name.c_str(), document.c_str(), status);
  }
  return 0;
}

int readCuts(const std::string& sound, const std::string& name, const std::string& document) {
  const DocumentServer server;
  const std::unique_ptr<Way> way = makeWay(name, sound, server.port());
  way->start();
  const std::string whole = contentOf(document);
  const std::filesystem::path cut = std::filesystem::path(way->folder()).parent_path() /
                                    ("tallymoor-cut-" + std::to_string(::getpid()) + ".xml");
  const std::size_t step = wholeCounts() ? 1 : STEP_OF_SHORT_FORM;
  std::size_t tried = 0;
  std::size_t refused = 0;
  std::size_t changed = 0;
  for (std::size_t length = 0; length < whole.size(); length += step) {
    ++tried;
    std::filesystem::remove(cut);
    std::ofstream(cut, std::ios::binary) << whole.substr(0, length);
    way->place(cut);
    const Data before(*way);
    const Outcome outcome = way->read();
    const Data after(*way);
    if (!outcome.read)
      ++refused;
    if (!before.changedUntil(after, outcome).empty())
      ++changed;
  }
  std::filesystem::remove(cut);
  std::printf("%s\t%zu\t%zu\t%zu\n", name.c_str(), tried, refused, changed);
  return 0;
}

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv); // The scripted user reports unexpected calls through GoogleTest.
  if (argc == 3 && std::strcmp(argv[2], "pairs") == 0)
    return Tallymoor::readPairs(argv[1]);
  if (argc == 5 && std::strcmp(argv[2], "cuts") == 0)
    return Tallymoor::readCuts(argv[1], argv[3], argv[4]);
  std::fprintf(stderr, "usage: hostile_reader SOUND pairs | SOUND cuts WAY DOCUMENT\n");
  return 2;
}
