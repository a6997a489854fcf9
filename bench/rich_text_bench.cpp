// Reading of formatted text: how fast, against a walk over the same bytes, and in how much memory, against
// the size of the document.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <fstream>
#include <random>
#include <string>

#include "bench/ratio_main.h"
#include "platform/appkit/rich_text/html/html_reader.h"
#include "platform/appkit/rich_text/rtf/rtf_reader.h"

namespace tarnix {
namespace {

constexpr std::size_t kDocumentSize = std::size_t{5} << 20;
constexpr const char* kHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\fmodern Courier New;}}"
    "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green128\\blue0;\\red0\\green0\\blue255;}\n";

template <typename AppendPart>
String document(std::string text, const char* end, AppendPart appendPart) {
  std::mt19937 random(1);
  while (text.size() < kDocumentSize) appendPart(text, random);
  return String(text + end);
}

void appendRow(std::string& text, std::mt19937& random) {
  text += "\\trowd\\trgaph70\\cellx1500\\cellx3000\\cellx4500\\cellx6000\\cellx7500\\cellx9000\n";
  for (int cell = 0; cell < 6; ++cell)
    text += "\\pard\\intbl\\qr " + std::to_string(random() % 100'000) + ".50\\cell\n";
  text += "\\row\n";
}

void appendCode(std::string& text, std::mt19937& random) {
  constexpr const char* kWords[] = {"return", "const", "value", "index", "while"};
  for (int word = 0; word < 8; ++word)
    text += "{\\f1\\fs20\\cf" + std::to_string(random() % 4) + " " + kWords[random() % 5] + "} ";
  text += "\\line\n";
}

void appendProse(std::string& text, std::mt19937& random) {
  constexpr const char* kWords[] = {"harbour ", "figures ", "caf\\'e9 ", "the ", "of ", "state "};
  text += "\\pard\\plain\\fs24 ";
  for (int word = 0; word < 80; ++word) text += kWords[random() % 6];
  text += "{\\b bold} and {\\i italic}.\\par\n";
}

// Each paragraph looks unlike all others.
void appendStyles(std::string& text, std::mt19937& random) {
  text += "\\pard\\plain\\li" + std::to_string(random() % 4000) + "\\sa" + std::to_string(random() % 4000) +
          "\\fs" + std::to_string(2 + random() % 300) + " a few words\\par\n";
}

void appendMarkup(std::string& text, std::mt19937& random) {
  text += "<p style=\"margin:0\">harbour <b>figures</b> of the <span style=\"color:#" +
          std::to_string(100'000 + random() % 9) +
          "\">state</span> and a <a href=\"https://a.example/\">link</a></p>\n";
}

const String& tableOfFigures() {
  static const String text = document(kHead, "}", appendRow);
  return text;
}
const String& colouredCode() {
  static const String text = document(kHead, "}", appendCode);
  return text;
}
const String& prose() {
  static const String text = document(kHead, "}", appendProse);
  return text;
}
const String& manyStyles() {
  static const String text = document(kHead, "}", appendStyles);
  return text;
}
const String& markup() {
  static const String text = document("<html><body>", "</body></html>", appendMarkup);
  return text;
}

using Document = const String& (*)();

void countBytes(benchmark::State& state, const String& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The least that any reader does: a look at each byte, one after the other.
void walk(benchmark::State& state) {
  const String& text = prose();
  for (auto _ : state) {
    std::uint32_t hash = 0;
    for (const char byte : text.view()) hash = hash * 31 + static_cast<unsigned char>(byte);
    benchmark::DoNotOptimize(hash);
  }
  countBytes(state, text);
}
BENCHMARK(walk);

void readRtf(benchmark::State& state, Document document) {
  for (auto _ : state) benchmark::DoNotOptimize(attributedStringFromRtf(document()));
  countBytes(state, document());
}
BENCHMARK_CAPTURE(readRtf, table, tableOfFigures);
BENCHMARK_CAPTURE(readRtf, code, colouredCode);
BENCHMARK_CAPTURE(readRtf, prose, prose);
BENCHMARK_CAPTURE(readRtf, styles, manyStyles);

void readHtml(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(attributedStringFromHtml(markup()));
  countBytes(state, markup());
}
BENCHMARK(readHtml);

// In KiB, by its name in the process's status.
std::size_t statusOf(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":")) return std::stoul(line.substr(name.size() + 1));
  return 0;
}

// How far the resident memory rises at most; a nanosecond for each byte.
void memoryOfRtf(benchmark::State& state, Document document) {
  const String& text = document();
  for (auto _ : state) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // The most from now on.
    const std::size_t before = statusOf("VmRSS");
    benchmark::DoNotOptimize(attributedStringFromRtf(text));
    state.SetIterationTime(static_cast<double>(statusOf("VmHWM") - before) * 1024e-9);
  }
}
BENCHMARK_CAPTURE(memoryOfRtf, table, tableOfFigures)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(memoryOfRtf, code, colouredCode)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(memoryOfRtf, prose, prose)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(memoryOfRtf, styles, manyStyles)->UseManualTime()->Iterations(1);

void sizeOfDocument(benchmark::State& state) {
  for (auto _ : state) state.SetIterationTime(static_cast<double>(kDocumentSize) * 1e-9);
}
BENCHMARK(sizeOfDocument)->UseManualTime()->Iterations(1);

}  // namespace
}  // namespace tarnix

int main(int argc, char** argv) {
  const std::string memory = "/iterations:1/manual_time";
  return tarnix::bench::run(
      argc, argv,
      {{"a table of figures, against a walk over its bytes", "readRtf/table", "walk", 22},
       {"coloured code, against a walk over its bytes", "readRtf/code", "walk", 22},
       {"prose, against a walk over its bytes", "readRtf/prose", "walk", 22},
       {"paragraphs of many styles, against a walk over their bytes", "readRtf/styles", "walk", 44},
       {"memory for a table of figures, against its size", "memoryOfRtf/table" + memory,
        "sizeOfDocument" + memory, 6},
       {"memory for coloured code, against its size", "memoryOfRtf/code" + memory, "sizeOfDocument" + memory,
        6},
       {"memory for prose, against its size", "memoryOfRtf/prose" + memory, "sizeOfDocument" + memory, 6},
       {"memory for many styles, against their size", "memoryOfRtf/styles" + memory,
        "sizeOfDocument" + memory, 12}});
}
