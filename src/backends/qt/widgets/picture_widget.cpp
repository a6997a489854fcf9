#include "backends/qt/widgets/picture_widget.h"

#include <QPainter>

namespace tarnix::qt {

void PictureWidget::setIcon(const QIcon& icon) {
  if (icon.cacheKey() == icon_.cacheKey()) return;
  icon_ = icon;
  setVisible(!icon.isNull());
  update();
}

void PictureWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  icon_.paint(&painter, rect());
}

}  // namespace tarnix::qt
