#pragma once

#include <QLabel>
#include <QWidget>

#include "backends/qt/previews/preview_answer.h"
#include "backends/qt/previews/preview_part.h"
#include "backends/qt/widgets/picture_widget.h"
#include "backends/qt/widgets/symbol_widget.h"

namespace tarnix::qt {

// What is known of a file that can't be shown otherwise.
class InformationPreview : public QWidget, public PreviewPart {
 public:
  explicit InformationPreview(QWidget* parent = nullptr);

  // `name` is that of the file; empty where it has none.
  void setInformation(const QString& name, const previewing::Information& information);

 private:
  PictureWidget* icon_;
  SymbolWidget* symbol_;  // Where the desktop has no icon.
  QLabel* name_;
  QLabel* facts_;
};

// That there is no preview, and why.
class PlaceholderPreview : public QWidget, public PreviewPart {
 public:
  explicit PlaceholderPreview(QWidget* parent = nullptr);

  void setReason(const QString& reason);
  // Without a symbol, while nothing has failed yet.
  void setLoading();

 private:
  SymbolWidget* symbol_;
  QLabel* reason_;
};

}  // namespace tarnix::qt
