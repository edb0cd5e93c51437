// A capital record of 20 years and 30 shares: what reading its file, keeping it and writing it costs, in
// columns as the program does it and in elements as it does other documents, measured against a bare reader
// of the XML library that reads the same bytes and does nothing with them.
#include "Ratio.h"
#include "books/CapitalRecordDocument.h"
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
constexpr double DECODE_LIMIT = 0.4;
constexpr double MEMORY_LIMIT = 1.0;
constexpr double ENCODE_LIMIT = 0.25;
constexpr double ELEMENTS_DECODE_LIMIT = 2.0;
constexpr double ELEMENTS_MEMORY_LIMIT = 8.0;
constexpr double ELEMENTS_ENCODE_LIMIT = 1.0;

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

double readIntoColumns(const String& path) {
  CapitalRecordDocument record;
  return secondsOf([&] { record.read(path); });
}

double writeColumns(CapitalRecordDocument& record) {
  Discard nowhere;
  std::ostream stream(&nowhere);
  return secondsOf([&] { record.write(stream); });
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

/// What reading adds to the memory of this process at most, while it is read and after.
template <class Work>
double memoryOf(const Work& read) {
  forgetPeak();
  const double before = peakMemory();
  read();
  return peakMemory() - before;
}

/// What a record takes in a new process, in times of its file.
template <class Record, class Read>
double memoryRatio(const std::string& document, const Read& read) {
  return inFreshProcess([&] {
           Record record;
           return memoryOf([&] { read(record); });
         }) /
         static_cast<double>(document.size());
}

/// The capital record as the program reads, keeps and writes it.
bool checkColumns(const String& path, const std::string& document) {
  const double decode = Bench::measureRatio(
      ROUNDS, [&] { return readIntoColumns(path); }, [&] { return readBare(document); });
  CapitalRecordDocument record;
  record.read(path);
  const double encode = Bench::measureRatio(
      ROUNDS, [&] { return writeColumns(record); }, [&] { return readBare(document); });
  const bool decodeKept = Bench::printRatio("capital_record_decode", decode, DECODE_LIMIT);
  return Bench::printRatio("capital_record_encode", encode, ENCODE_LIMIT) && decodeKept;
}

/// The first readings are made in processes forked before this one creates a day's element.
bool checkElements(const std::string& document) {
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
  const bool decodeKept =
      Bench::printRatio("elements_decode", std::max(firstDecode, laterDecode), ELEMENTS_DECODE_LIMIT);
  return Bench::printRatio("elements_encode", encode, ELEMENTS_ENCODE_LIMIT) && decodeKept;
}

/// Empty pools are needed here, so this comes before all else.
bool checkMemory(const String& path, const std::string& document) {
  const double columns = memoryRatio<CapitalRecordDocument>(
      document, [&path](CapitalRecordDocument& record) { record.read(path); });
  const double elements = memoryRatio<XMLSharePortfolioCapitalRecord>(
      document, [&path](XMLSharePortfolioCapitalRecord& record) { record.decode(path); });
  const bool columnsKept = Bench::printRatio("capital_record_memory", columns, MEMORY_LIMIT);
  return Bench::printRatio("elements_memory", elements, ELEMENTS_MEMORY_LIMIT) && columnsKept;
}

std::string theDocument;

void BM_ReadBare(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(readBare(theDocument));
}

void BM_DecodeElements(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(readIntoElements(theDocument));
}

void BM_EncodeElements(benchmark::State& state) {
  XMLSharePortfolioCapitalRecord record;
  record.decode(theDocument.c_str());
  for (auto _ : state)
    state.SetIterationTime(writeElements(record));
}

BENCHMARK(BM_ReadBare)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeElements)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EncodeElements)->UseManualTime()->Unit(benchmark::kMillisecond);

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
  {
    std::ifstream file(path, std::ios::binary);
    theDocument.assign(std::istreambuf_iterator<char>(file), {});
  }
  std::printf("capital record: %.1f MB\n", static_cast<double>(theDocument.size()) / 1e6);
  const String pathText(path.c_str());
  const bool memoryKept = checkMemory(pathText, theDocument);
  const bool columnsKept = checkColumns(pathText, theDocument);
  const bool elementsKept = checkElements(theDocument);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove(path);
  return memoryKept && columnsKept && elementsKept ? 0 : 1;
}
