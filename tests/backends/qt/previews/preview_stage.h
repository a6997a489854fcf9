#pragma once

#include <QSize>
#include <QString>
#include <QWidget>
#include <chrono>
#include <string>

#include "backends/linux/temporary_directory.h"
#include "backends/qt/previews/preview_widget.h"
#include "backends/qt/stage.h"

namespace tarnix::qt {

// A preview in a window of its own, with a folder for what it shows. The previewer is the real one unless
// told otherwise.
class PreviewStage {
 public:
  PreviewStage();
  PreviewStage(const PreviewStage&) = delete;
  PreviewStage& operator=(const PreviewStage&) = delete;
  ~PreviewStage();

  // What assistive tools call the preview of the path, or the bytes, once it is there; empty if it does not
  // come.
  std::string nameOfPreview(const std::string& path) { return nameOfPreview(previewOfPath(path), "name"); }
  std::string nameOfPreview(PreviewSource source, const QString& name);
  // The same for what is on show by now.
  std::string shownName() const;
  QWidget* shownPart() const;
  QAccessible::Role shownRole() const;

  template <typename Part>
  Part* part() const {
    return dynamic_cast<Part*>(shownPart());
  }
  // Writes the file and gives its path.
  std::string file(std::string_view name, std::string_view contents) const;
  // A previewer that is a shell script, for the previews that come.
  void useScript(std::string_view script) const;

  linux_desktop::TemporaryDirectory folder;
  PreviewWidget widget;
  // Of the previewers that were seen at work, the most memory that one had in use, in bytes.
  std::size_t peakMemory = 0;
  // The longest time that the loop was busy with other things than this test.
  std::chrono::milliseconds longestTurn{0};

 private:
  void noteMemory();
};

// Files, as their formats say.
std::string pngFile(QSize size, bool hasPixels = true);
std::string pdfFile(int pages, bool isEncrypted = false);
// Progressively: whole in memory before the first pixel is known.
std::string pictureFile(QSize size, const char* format, bool isProgressive = false);

}  // namespace tarnix::qt
