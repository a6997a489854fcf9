#pragma once

#include <QLabel>
#include <QWidget>

#include "backends/qt/previews/preview_answer.h"
#include "backends/qt/text/plain/plain_text_view.h"

namespace tarnix::qt {

// A text, and below it how much of the file that is unless it is all.
class TextPreview : public QWidget {
 public:
  explicit TextPreview(QWidget* parent = nullptr);

  void setText(const PreviewText& text);

 private:
  PlainTextView* text_;
  QLabel* part_;
};

}  // namespace tarnix::qt
