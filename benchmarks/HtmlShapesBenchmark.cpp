// Pages of two million elements (or as many as are read before the page is rejected) in shapes with quadratic
// cost in a simple implementation. Each may take at most 2.2 times the time of half the page. ./test checks
// the same by counting comparisons, which does not depend on the machine.
#include "Ratio.h"
#include "shapes/HtmlShapes.h"
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <vector>

namespace Tallymoor {
namespace {

/// Large enough that even half of the tree exceeds every CPU cache. Otherwise an uncached page would be
/// compared with a cached one.
constexpr std::size_t PIECES = 2000000;
constexpr std::size_t LEAST_ROUNDS = 9;
constexpr double LEAST_SECONDS = 0.6; ///< Minimum time per shape; shorter runs are repeated more often.
constexpr double LIMIT = 2.2;
/// Below this a ratio shows cache effects rather than the page's size.
constexpr double SHORTEST = 0.004;

/// CPU time, to exclude other load on the machine.
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

/// The median of many ratios of two consecutive runs, so that other load affects both. Pages that are too
/// fast are made longer.
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
  // Keeps freed memory in the process. Otherwise large blocks, which a whole page needs more often than half
  // a page, would be fetched from the system and cleared in each run.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
  return Tallymoor::checkLimits() ? 0 : 1;
}
