#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <string>

#include "backends/simulated/desktop.h"
#include "bench/ratio_main.h"
#include "history/content_view.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kTitleSize = 1024;

// Running text without digits, different for each clip.
String titleOf(std::size_t number) {
  constexpr std::string_view kWords[] = {"harbour ", "figures ", "quarterly ", "the ",
                                         "of ",      "revenue ", "and ",       "state "};
  std::string text;
  for (std::size_t i = number; text.size() < kTitleSize; i = i * 7 + 3) text += kWords[i % std::size(kWords)];
  text.resize(kTitleSize);
  return String(text);
}

ClipHistory historyOf(std::size_t count) {
  ClipHistory history(count);
  for (std::size_t i = 0; i < count; ++i) {
    history[i].id = UUID::random();
    history[i].title = titleOf(i);
    history[i].possibleText = history[i].title;
    history[i].itemType = ClipboardItemType::textItem;
  }
  return history;
}

const ClipHistory& largeHistory() {
  static const ClipHistory history = historyOf(100'000);
  return history;
}

const std::string& titlesEndToEnd() {
  static const std::string bytes = [] {
    std::string all;
    for (const ClipboardItem& clip : largeHistory()) all += clip.title.view();
    return all;
  }();
  return bytes;
}

void searchForAbsentByte(benchmark::State& state) {
  const std::string& bytes = titlesEndToEnd();
  for (auto _ : state) benchmark::DoNotOptimize(std::memchr(bytes.data(), '#', bytes.size()));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(searchForAbsentByte);

void filter(benchmark::State& state, const char* searchText) {
  const ClipHistory& history = largeHistory();
  const String text(searchText);
  for (auto _ : state) benchmark::DoNotOptimize(FilteredClips(history, text).size());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(titlesEndToEnd().size()));
}
BENCHMARK_CAPTURE(filter, absentWord, "invoice");
BENCHMARK_CAPTURE(filter, absentTwoLetters, "zq");
BENCHMARK_CAPTURE(filter, absentCommonLetters, "eta");
BENCHMARK_CAPTURE(filter, absentAccents, "caf\u00E9");
BENCHMARK_CAPTURE(filter, inEveryTitle, "harbour");

// A redraw as a capture causes it: one evaluation, with the rows of one screen made anew.
void redraw(benchmark::State& state) {
  SimulatedDesktop desktop;
  const ContentView view = desktop.show<ContentView>();
  view.clipboard.set(historyOf(static_cast<std::size_t>(state.range(0))));
  view.selectedItemId.set(view.clipboard->back().id);
  desktop.advance(0ms);
  for (auto _ : state) {
    view.searchText.set("");
    desktop.advance(0ms);
    const Element& list = desktop.window().graph().tree()->children[0].children[0];
    const auto& section = *list.children[0].as<elements::Section>();
    benchmark::DoNotOptimize(section.positionOfTag(**view.selectedItemId));
    for (std::size_t row = 0; row < 20; ++row) benchmark::DoNotOptimize(section.row(row));
  }
}
BENCHMARK(redraw)->Arg(100)->Arg(100'000);

// One tick of the poll, nothing having changed. Each noted change makes the held timer due.
void tick(benchmark::State& state) {
  SimulatedDesktop desktop;
  const NSPasteboard::Observable observable(NSPasteboard::generalPasteboard());
  for (auto _ : state) {
    desktop.runLoop().noteChange();
    desktop.advance(200ms);
  }
}
BENCHMARK(tick);

void oneMicrosecond(benchmark::State& state) {
  for (auto _ : state) state.SetIterationTime(1e-6);
}
BENCHMARK(oneMicrosecond)->UseManualTime()->Iterations(1);

void copyOfSmallClip(benchmark::State& state) {
  const ClipboardItem clip = largeHistory().front();
  for (auto _ : state) benchmark::DoNotOptimize(ClipboardItem(clip));
}
BENCHMARK(copyOfSmallClip);

void copyOfLargeClip(benchmark::State& state) {
  ClipboardItem clip = largeHistory().front();
  clip.title = String(std::string(100'000'000, 'x'));
  clip.possibleText = clip.title;
  for (auto _ : state) benchmark::DoNotOptimize(ClipboardItem(clip));
}
BENCHMARK(copyOfLargeClip);

}  // namespace
}  // namespace tarnix

int main(int argc, char** argv) {
  return tarnix::bench::run(
      argc, argv,
      {{"filter, word, against memchr over the same bytes", "filter/absentWord", "searchForAbsentByte", 2},
       {"filter, two rare letters, against memchr", "filter/absentTwoLetters", "searchForAbsentByte", 2},
       {"filter, three common letters, against memchr", "filter/absentCommonLetters", "searchForAbsentByte",
        2},
       {"filter, accented word, against a word in ASCII", "filter/absentAccents", "filter/absentWord", 3},
       {"redraw with 100,000 clips against 100", "redraw/100000", "redraw/100", 1.5},
       {"one tick against a microsecond", "tick", "oneMicrosecond/iterations:1/manual_time", 1},
       {"copying a clip of 100 MB against one of 1 KB", "copyOfLargeClip", "copyOfSmallClip", 1.5}});
}
