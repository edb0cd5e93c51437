#pragma once
#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace Tallymoor::Bench {

/// The middle value; the mean of the two middle ones where their number is even.
inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

/// One line for whoever checks the limits: "ratio NAME VALUE LIMIT". True when the value keeps the limit.
inline bool printRatio(const std::string& name, double value, double limit) {
  std::printf("ratio %s %.4g %g\n", name.c_str(), value, limit);
  std::fflush(stdout);
  return value <= limit;
}

/// How long our side takes against a reference. The two run alternately in one process, so that whatever else
/// the machine does falls on both, and the medians are compared. Each side gives the seconds of one run, so
/// that it can keep its preparation and its clearing up out of the time.
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
