// Growth of the cost of reading a page with its size, for adverse shapes: at most 2.2 times the cost of half
// the page. The cost is measured in comparisons, counted by compiler instrumentation, because time depends on
// the machine.
#include "shapes/HtmlShapes.h"
#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace {

std::uint64_t s_comparisons = 0;

} // namespace

extern "C" {
void __sanitizer_cov_trace_cmp1(std::uint8_t, std::uint8_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_cmp2(std::uint16_t, std::uint16_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_cmp4(std::uint32_t, std::uint32_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_cmp8(std::uint64_t, std::uint64_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_const_cmp1(std::uint8_t, std::uint8_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_const_cmp2(std::uint16_t, std::uint16_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_const_cmp4(std::uint32_t, std::uint32_t) {
  ++s_comparisons;
}
void __sanitizer_cov_trace_const_cmp8(std::uint64_t, std::uint64_t) {
  ++s_comparisons;
}
}

namespace Tallymoor {
namespace {

constexpr std::size_t PIECES = 250000;
constexpr double LIMIT = 2.2;

std::uint64_t workOf(const HtmlShape& shape, std::size_t pieces) {
  String page = shape.page(pieces);
  s_comparisons = 0;
  readShape(std::move(page));
  return s_comparisons;
}

int check() {
  double worst = 0.0;
  const char* worstName = "";
  std::size_t shapes = 0;
  for (const HtmlShape& shape : htmlShapes()) {
    const std::size_t pieces = std::min(PIECES, shape.mostPieces);
    const std::uint64_t half = workOf(shape, pieces / 2);
    const std::uint64_t whole = workOf(shape, pieces);
    if (half < pieces / 4) {
      std::printf("%s: only %llu comparisons, so they are no measure\n", shape.name,
                  static_cast<unsigned long long>(half));
      return 1;
    }
    const double ratio = static_cast<double>(whole) / static_cast<double>(half);
    std::printf("%-40s %6.1f comparisons a piece, %.3f times those of half the page\n", shape.name,
                static_cast<double>(whole) / static_cast<double>(pieces), ratio);
    if (ratio > worst) {
      worst = ratio;
      worstName = shape.name;
    }
    ++shapes;
  }
  std::printf("COUNT: html shapes: %zu pages of 250,000 pieces or as many as are read, at worst %.2f times "
              "the comparisons of half "
              "the page (%s), "
              "limit %.1f\n",
              shapes, worst, worstName, LIMIT);
  return worst <= LIMIT ? 0 : 1;
}

} // namespace
} // namespace Tallymoor

int main() {
  return Tallymoor::check();
}
