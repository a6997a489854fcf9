// How long a large folder and a long document take until they are on screen, and how long they keep the
// window's loop busy at most, as multiples of what small ones take.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTreeView>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "backends/qt/previews/page_preview.h"
#include "backends/qt/previews/preview_widget.h"
#include "bench/ratio_main.h"

namespace tarnix::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kSeconds = 1e9;  // In nanoseconds.
constexpr qint64 kPause = 200;    // Milliseconds: after it, a preview begins at once.

// Removed at the end, with what the benchmarks put into it.
class Files {
 public:
  Files() {
    std::string name = (fs::temp_directory_path() / "tarnix-bench-XXXXXX").string();
    root_ = mkdtemp(name.data());
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() { fs::remove_all(root_); }

  std::string folder(int entries) const {
    const fs::path path = root_ / ("folder" + std::to_string(entries));
    if (!fs::create_directory(path)) return path.string();
    for (int i = 0; i < entries; ++i) std::ofstream(path / ("Entry " + std::to_string(i) + ".txt")) << i;
    return path.string();
  }

  std::string document(int pages) const {
    const fs::path path = root_ / ("document" + std::to_string(pages));
    std::string kids;
    for (int page = 0; page < pages; ++page) kids += std::to_string(3 + page) + " 0 R ";
    std::string pdf =
        "%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Kids [" +
        kids + "] /Count " + std::to_string(pages) + " >>\nendobj\n";
    for (int page = 0; page < pages; ++page) {
      pdf += std::to_string(3 + page) +
             " 0 obj\n<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>\nendobj\n";
    }
    std::ofstream(path) << pdf << "trailer << /Root 1 0 R >>\n%%EOF\n";
    return path.string();
  }

 private:
  fs::path root_;
};

const Files& files() {
  static const Files made;
  return made;
}

struct Shown {
  qint64 untilShown = 0;  // Nanoseconds.
  qint64 longestTurn = 0;
};

bool isOnScreen(const qt::PreviewWidget& widget, int rows) {
  for (const QWidget* each : widget.findChildren<QWidget*>()) {
    if (const auto* const pages = dynamic_cast<const qt::PagePreview*>(each)) return pages->isDrawn(0);
    if (const auto* const tree = dynamic_cast<const QTreeView*>(each))
      return tree->model()->rowCount() == rows;
  }
  return false;
}

// All rows of a folder, or the first page of a document.
Shown show(const std::string& path, int rows) {
  qt::PreviewWidget widget;
  widget.resize(800, 600);
  widget.show();
  QCoreApplication::processEvents();
  QThread::msleep(kPause);
  Shown shown;
  QElapsedTimer whole;
  whole.start();
  widget.setSource(qt::previewOfPath(path), "name");
  while (!isOnScreen(widget, rows)) {
    QElapsedTimer turn;
    turn.start();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    shown.longestTurn = std::max(shown.longestTurn, turn.nsecsElapsed());
    QThread::usleep(100);
  }
  widget.repaint();
  shown.untilShown = whole.nsecsElapsed();
  return shown;
}

void time(benchmark::State& state, const std::string& path, int rows, qint64 Shown::*what) {
  show(path, rows);  // So that the first does not pay for what all share.
  for (auto each : state) state.SetIterationTime(static_cast<double>(show(path, rows).*what) / kSeconds);
}

void folderUntilShown(benchmark::State& state) {
  const int entries = static_cast<int>(state.range(0));
  time(state, files().folder(entries), entries, &Shown::untilShown);
}
void folderLongestTurn(benchmark::State& state) {
  const int entries = static_cast<int>(state.range(0));
  time(state, files().folder(entries), entries, &Shown::longestTurn);
}
void documentUntilShown(benchmark::State& state) {
  time(state, files().document(static_cast<int>(state.range(0))), 0, &Shown::untilShown);
}
void documentLongestTurn(benchmark::State& state) {
  time(state, files().document(static_cast<int>(state.range(0))), 0, &Shown::longestTurn);
}

constexpr int kRounds = 10;
BENCHMARK(folderUntilShown)
    ->Arg(10)
    ->Arg(10'000)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(folderLongestTurn)
    ->Arg(10)
    ->Arg(10'000)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(documentUntilShown)
    ->Arg(1)
    ->Arg(1000)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(documentLongestTurn)
    ->Arg(1)
    ->Arg(1000)
    ->UseManualTime()
    ->Iterations(kRounds)
    ->Unit(benchmark::kMillisecond);

std::string named(const char* benchmark, int size) {
  return std::string(benchmark) + "/" + std::to_string(size) + "/iterations:" + std::to_string(kRounds) +
         "/manual_time";
}

}  // namespace
}  // namespace tarnix::bench

int main(int argc, char** argv) {
  using tarnix::bench::named;
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication application(argc, argv);
  tarnix::qt::PreviewerProcess::setProgram(TARNIX_PREVIEWER);
  return tarnix::bench::run(argc, argv,
                            {{"a folder of 10,000 on screen, to one of 10", named("folderUntilShown", 10'000),
                              named("folderUntilShown", 10), 5},
                             {"the loop's longest turn with it", named("folderLongestTurn", 10'000),
                              named("folderLongestTurn", 10), 5},
                             {"a document of 1,000 pages on screen, to one of 1",
                              named("documentUntilShown", 1000), named("documentUntilShown", 1), 3},
                             {"the loop's longest turn with it", named("documentLongestTurn", 1000),
                              named("documentLongestTurn", 1), 3}});
}
