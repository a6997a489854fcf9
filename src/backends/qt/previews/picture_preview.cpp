#include "backends/qt/previews/picture_preview.h"

#include <QPainter>
#include <cmath>
#include <utility>

#include "backends/qt/previews/preview_texts.h"

namespace tarnix::qt {
namespace {

constexpr int kPictureMargin = 16;

}  // namespace

PicturePreview::PicturePreview(QWidget* parent) : QWidget(parent), PreviewPart(QAccessible::Graphic) {}

void PicturePreview::setPicture(PreviewPicture picture) {
  image_ = std::move(picture.image);
  fitted_ = {};
  setAccessibleName(texts::pictureName(picture.storedSize));
  update();
}

QRectF PicturePreview::pictureRect() const {
  const QMargins margins(kPictureMargin, kPictureMargin, kPictureMargin, kPictureMargin);
  const QSizeF room = QSizeF(rect().marginsRemoved(margins).size()).expandedTo({1, 1});
  QSizeF size = QSizeF(image_.size()) / devicePixelRatioF();
  if (size.width() > room.width() || size.height() > room.height()) size.scale(room, Qt::KeepAspectRatio);
  // On whole pixels, so that a picture in its own size stays sharp.
  const auto snapped = [ratio = devicePixelRatioF()](double place) {
    return std::round(place * ratio) / ratio;
  };
  return {{snapped((width() - size.width()) / 2), snapped((height() - size.height()) / 2)}, size};
}

void PicturePreview::paintEvent(QPaintEvent*) {
  if (image_.isNull()) return;
  const QRectF place = pictureRect();
  const QSize pixels = (place.size() * devicePixelRatioF()).toSize().expandedTo({1, 1});
  if (fitted_.size() != pixels)
    fitted_ = pixels == image_.size()
                  ? image_
                  : image_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(this).drawImage(place, fitted_);
}

}  // namespace tarnix::qt
