#pragma once

#include <string>
#include <vector>

namespace tarnix::bench {

// What one benchmark took, as a multiple of what another took in the same run.
struct Ratio {
  std::string meaning;
  std::string measured;   // Name of a benchmark.
  std::string reference;  // Name of the benchmark that it is compared with.
  double atMost;
};

// Runs the benchmarks that the command line chooses and prints the ratios between those that ran. Times by
// themselves say little about another machine; ratios carry over.
int run(int argc, char** argv, const std::vector<Ratio>& ratios);

}  // namespace tarnix::bench
