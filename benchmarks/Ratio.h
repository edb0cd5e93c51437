#pragma once
#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace Tallymoor::Bench {

/// The median; for an even count the mean of the two middle values.
inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

/// Prints "ratio NAME VALUE LIMIT" for the script that checks the limits. True if the value is within the
/// limit.
inline bool printRatio(const std::string& name, double value, double limit) {
  std::printf("ratio %s %.4g %g\n", name.c_str(), value, limit);
  std::fflush(stdout);
  return value <= limit;
}

/// Ratio of our time to a reference. Both sides run alternately in one process, so that other load affects
/// both, and their medians are compared. Each function returns the seconds of a run, so it can exclude its
/// setup and cleanup.
inline double measureRatio(int rounds, const std::function<double()>& ours,
                           const std::function<double()>& reference) {
  std::vector<double> oursSeconds;
  std::vector<double> referenceSeconds;
  for (int round = 0; round < rounds; ++round) {
    referenceSeconds.push_back(reference());
    oursSeconds.push_back(ours());
  }
  return median(oursSeconds) / median(referenceSeconds);
}

} // namespace Tallymoor::Bench
