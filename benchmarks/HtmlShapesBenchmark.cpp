// Pages of two million pieces, or of as many as are read before the page is refused, in shapes that a
// careless reader takes for ever with: each takes at most 2.2 times the time of half the page. ./test counts
// the same in comparisons, which are the same on every machine.
#include "Ratio.h"
#include "shapes/HtmlShapes.h"
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <vector>

namespace Tallymoor {
namespace {

/// So many that the tree of half of them fits into no processor's cache: else the whole page would be
/// measured against one that does.
constexpr std::size_t PIECES = 2000000;
constexpr std::size_t LEAST_ROUNDS = 9;
constexpr double LEAST_SECONDS = 0.6; ///< that a shape is measured for: the shorter it is the more the rounds
constexpr double LIMIT = 2.2;
/// Below this a page takes no time worth a ratio: what is new in the cache shows more than its size.
constexpr double SHORTEST = 0.004;

/// Seconds of the processor, so that whatever else the machine does is left out.
double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double secondsToRead(const String& page) {
  String copy = page;
  const double start = processorSeconds();
  readShape(std::move(copy));
  return processorSeconds() - start;
}

/// The middle one of many ratios, each of two runs right after each other, so that what slows the machine
/// falls on both. Pages that are read at once are made longer until they aren't.
double ratioOf(const HtmlShape& shape) {
  for (std::size_t pieces = std::min(PIECES, shape.mostPieces);; pieces *= 2) {
    const String half = shape.page(pieces / 2);
    const String whole = shape.page(pieces);
    if (secondsToRead(half) < SHORTEST && pieces < shape.mostPieces)
      continue;
    std::vector<double> ratios;
    double seconds = 0.0;
    while (ratios.size() < LEAST_ROUNDS || seconds < LEAST_SECONDS) {
      const double halfSeconds = secondsToRead(half);
      const double wholeSeconds = secondsToRead(whole);
      ratios.push_back(wholeSeconds / halfSeconds);
      seconds += halfSeconds + wholeSeconds;
    }
    const double ratio = Bench::median(ratios);
    std::printf("%-40s %8.1f ms for %zu pieces, %.2f times half of them\n", shape.name,
                seconds / static_cast<double>(ratios.size()) * ratio / (1.0 + ratio) * 1e3, pieces, ratio);
    std::fflush(stdout);
    return ratio;
  }
}

bool checkLimits() {
  double worst = 0.0;
  for (const HtmlShape& shape : htmlShapes())
    worst = std::max(worst, ratioOf(shape));
  return Bench::printRatio("html_shapes", worst, LIMIT);
}

} // namespace
} // namespace Tallymoor

int main() {
  // Memory is kept from run to run: else blocks above a certain size alone, so those of the whole page more
  // often than those of its half, would come fresh from the system each time, and clearing them would be
  // measured.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
  return Tallymoor::checkLimits() ? 0 : 1;
}
