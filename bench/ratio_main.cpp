#include "bench/ratio_main.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace tarnix::bench {
namespace {

class CollectingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (!run.error_occurred) nanoseconds[run.benchmark_name()] = timeOf(run);
    }
  }

  std::map<std::string, double> nanoseconds;

 private:
  // Processor time, which other programs disturb least, unless the benchmark brings its own.
  static double timeOf(const Run& run) {
    return run.run_name.time_type == "manual_time" ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
  }
};

void print(const Ratio& ratio, const std::map<std::string, double>& times) {
  const auto measured = times.find(ratio.measured);
  const auto reference = times.find(ratio.reference);
  if (measured == times.end() || reference == times.end()) return;
  const double value = measured->second / reference->second;
  std::printf("%-62s %8.3f   at most %.3f   %s\n", ratio.meaning.c_str(), value, ratio.atMost,
              value <= ratio.atMost ? "held" : "NOT HELD");
}

}  // namespace

int run(int argc, char** argv, const std::vector<Ratio>& ratios) {
  benchmark::Initialize(&argc, argv);
  CollectingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nRatios of this run:\n");
  for (const Ratio& ratio : ratios) print(ratio, reporter.nanoseconds);
  benchmark::Shutdown();
  return 0;
}

}  // namespace tarnix::bench
