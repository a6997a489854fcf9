#pragma once

#include <QImage>
#include <QWidget>

#include "backends/qt/previews/preview_answer.h"
#include "backends/qt/previews/preview_part.h"

namespace tarnix::qt {

// A picture in the middle, as large as its room and its pixels allow, each of which is one of the screen at
// most.
class PicturePreview : public QWidget, public PreviewPart {
 public:
  explicit PicturePreview(QWidget* parent = nullptr);

  void setPicture(PreviewPicture picture);
  // Where it lies.
  QRectF pictureRect() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage image_;
  QImage fitted_;  // To the pixels that it takes; empty until it is drawn.
};

}  // namespace tarnix::qt
