// A capital record of 20 years and 30 shares: the cost of reading it into elements, of storing it and of
// writing it, compared with a SAX reader of the XML library that reads the same bytes and ignores them.
#include "Ratio.h"
#include "foundation/Constants.h"
#include "foundation/Date.h"
#include "xml/CapitalRecord.h"
#include "xml/DocumentReader.h"
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace Tallymoor {
namespace {

constexpr int YEARS = 20;
constexpr int SHARES = 30;
constexpr int DAYS = YEARS * 365 + YEARS / 4;
constexpr int ROUNDS = 9;
constexpr double DECODE_LIMIT = 2.0;
constexpr double MEMORY_LIMIT = 8.0;
constexpr double ENCODE_LIMIT = 1.0;

/// Discards the output, so that neither the disk nor a growing string is measured.
class Discard : public std::streambuf {
protected:
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    benchmark::DoNotOptimize(bytes);
    return count;
  }
  int overflow(int unit) override { return unit; }
};

void addDay(XMLElement& record, const Date& day, int number) {
  XMLElement& cap = record.addSubElement(XMLDayCap::create(), u"DayCaps");
  cap.subElement(u"Date").setValue(day.toString(DATE_DISPLAY_DMY));
  cap.subElement(u"CashTotal").setValue(String::fromDouble(1264.0 + number, 2));
  for (int share = 0; share < SHARES; ++share) {
    XMLElement& val = cap.addSubElement(XMLShareVal::create(), u"ShareVals");
    val.subElement(u"Code").setValue(String(u"AB") + static_cast<char16_t>(u'A' + share % 26) +
                                     (share < 26 ? u".AX" : u"X.AX"));
    val.subElement(u"Number").setValue(String::fromDouble(100.0 * (share + 1) * (share % 5 + 1), 2));
    val.subElement(u"Price").setValue(String::fromDouble(0.37 * (share + 1) + number * 0.01, 2));
  }
}

/// The document as written by the program.
std::string makeDocument() {
  auto record = std::make_unique<XMLSharePortfolioCapitalRecord>();
  record->subElement(u"Name").setValue(u"Trading");
  const Date first(2006, 3, 3);
  for (int number = 0; number < DAYS; ++number)
    addDay(*record, first.plusDays(number), number);
  std::ostringstream stream;
  record->encodeWithDoctype(stream, RECORDS_DTD);
  return stream.str();
}

/// CPU time, which is least affected by other programs. All work is done on one thread.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work>
double secondsOf(const Work& work) {
  const double start = processorSeconds();
  work();
  return processorSeconds() - start;
}

double readBare(const std::string& document) {
  DocumentReader reader;
  xercesc::DefaultHandler nothing;
  reader.setContentHandler(&nothing);
  reader.setErrorHandler(&nothing);
  xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                                    "bare");
  return secondsOf([&] {
    reader.beginDocument(DocumentLimits(), false);
    reader.parse(source);
  });
}

double readIntoElements(const std::string& document) {
  XMLSharePortfolioCapitalRecord record;
  return secondsOf([&] { record.decode(document.c_str()); });
}

double writeElements(XMLElement& record) {
  Discard nowhere;
  std::ostream stream(&nowhere);
  return secondsOf([&] { record.encodeWithDoctype(stream, RECORDS_DTD); });
}

/// Runs the work in a new process, whose pools are empty, and returns its result.
template <class Work>
double inFreshProcess(const Work& work) {
  int ends[2];
  if (pipe(ends) != 0)
    std::abort();
  const pid_t child = fork();
  if (child == 0) {
    const double answer = work();
    const bool told = write(ends[1], &answer, sizeof answer) == sizeof answer;
    _exit(told ? 0 : 1);
  }
  close(ends[1]);
  double answer = 0.0;
  const bool heard = read(ends[0], &answer, sizeof answer) == sizeof answer;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  if (!heard)
    std::abort();
  return answer;
}

/// Peak memory of this process in bytes since the last call of forgetPeak.
double peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:"))
      return std::atof(line.c_str() + 6) * 1024.0;
  return 0.0;
}

void forgetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

double memoryOfTree(const std::string& path) {
  forgetPeak();
  const double before = peakMemory();
  XMLSharePortfolioCapitalRecord record;
  record.decode(String(path.c_str()));
  return peakMemory() - before;
}

/// All measurements need empty pools, so the first ones are made in processes forked before this one creates
/// an element.
int checkLimits(const std::string& path) {
  const auto size = static_cast<double>(std::filesystem::file_size(path));
  std::string document;
  {
    std::ifstream file(path, std::ios::binary);
    document.assign(std::istreambuf_iterator<char>(file), {});
  }
  std::printf("capital record: %.1f MB\n", size / 1e6);
  const double memory = inFreshProcess([&] { return memoryOfTree(path); }) / size;
  const double firstDecode = Bench::measureRatio(
      ROUNDS, [&] { return inFreshProcess([&] { return readIntoElements(document); }); },
      [&] { return inFreshProcess([&] { return readBare(document); }); });
  const double laterDecode = Bench::measureRatio(
      ROUNDS, [&] { return readIntoElements(document); }, [&] { return readBare(document); });
  XMLSharePortfolioCapitalRecord record;
  record.decode(document.c_str());
  const double encode = Bench::measureRatio(
      ROUNDS, [&] { return writeElements(record); }, [&] { return readBare(document); });
  std::printf("decoding with pools already filled: %.3f\n", laterDecode);
  bool kept = Bench::printRatio("capital_record_decode", std::max(firstDecode, laterDecode), DECODE_LIMIT);
  kept = Bench::printRatio("capital_record_memory", memory, MEMORY_LIMIT) && kept;
  kept = Bench::printRatio("capital_record_encode", encode, ENCODE_LIMIT) && kept;
  return kept ? 0 : 1;
}

std::string theDocument;

void BM_ReadBare(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(readBare(theDocument));
}

void BM_Decode(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(readIntoElements(theDocument));
}

void BM_Encode(benchmark::State& state) {
  XMLSharePortfolioCapitalRecord record;
  record.decode(theDocument.c_str());
  for (auto _ : state)
    state.SetIterationTime(writeElements(record));
}

BENCHMARK(BM_ReadBare)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Decode)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Encode)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  using namespace Tallymoor;
  const auto path =
      std::filesystem::temp_directory_path() / ("capital-record-" + std::to_string(getpid()) + ".xml");
  // Another process creates the document, so that this one's pools stay empty.
  inFreshProcess([&] {
    std::ofstream(path, std::ios::binary) << makeDocument();
    return 1.0;
  });
  const int result = checkLimits(path.string());
  {
    std::ifstream file(path, std::ios::binary);
    theDocument.assign(std::istreambuf_iterator<char>(file), {});
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove(path);
  return result;
}
