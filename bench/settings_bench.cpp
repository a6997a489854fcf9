#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/ratio_main.h"
#include "settings/observation/observe.h"
#include "settings/store.h"

namespace tarnix {
namespace {

// As many settings as a large program has.
constexpr int kSettings = 64;

String nameOf(int number) { return "setting" + std::to_string(number); }

// A suite in memory with all settings stored, and the key of one of them.
struct Fixture {
  std::shared_ptr<NSUserDefaults> suite = NSUserDefaults::make(std::make_unique<MemoryDefaultsStorage>());
  Defaults::Key<bool> key{nameOf(kSettings / 2), true, suite};

  Fixture() {
    for (int i = 0; i < kSettings; ++i) suite->setObject(PropertyList{true}, nameOf(i));
  }
};

void lookUp(benchmark::State& state) {
  std::unordered_map<String, bool> map;
  for (int i = 0; i < kSettings; ++i) map.emplace(nameOf(i), true);
  const String name = nameOf(kSettings / 2);
  for (auto _ : state) benchmark::DoNotOptimize(map.find(name)->second);
}
BENCHMARK(lookUp);

void readBool(benchmark::State& state) {
  const Fixture fixture;
  for (auto _ : state) benchmark::DoNotOptimize(defaults[fixture.key].get());
}
BENCHMARK(readBool);

void writeBool(benchmark::State& state) {
  const Fixture fixture;
  bool value = false;
  for (auto _ : state) defaults[fixture.key] = value = !value;
}
BENCHMARK(writeBool);

void deliver(benchmark::State& state) {
  const Fixture fixture;
  std::vector<std::shared_ptr<DefaultsObservation_>> observations;
  int changes = 0;
  for (int i = 0; i < state.range(0); ++i) {
    observations.push_back(Defaults::observe(fixture.key, {}, [&](const Defaults::KeyChange<bool>& change) {
      changes += change.newValue ? 1 : 0;
    }));
  }
  bool value = false;
  for (auto _ : state) defaults[fixture.key] = value = !value;
  benchmark::DoNotOptimize(changes);
}
BENCHMARK(deliver)->Arg(10)->Arg(100)->Arg(1000);

}  // namespace
}  // namespace tarnix

// Ten times as many observers take ten times as long, and somewhat more once they no longer fit the caches; a
// quadratic delivery would take a hundred times as long.
int main(int argc, char** argv) {
  return tarnix::bench::run(
      argc, argv,
      {{"reading a boolean setting against a look-up of its name", "readBool", "lookUp", 3},
       {"writing one in memory, unobserved, against the look-up", "writeBool", "lookUp", 10},
       {"telling 1,000 observers against telling 100", "deliver/1000", "deliver/100", 15},
       {"telling 100 observers against telling 10", "deliver/100", "deliver/10", 15}});
}
