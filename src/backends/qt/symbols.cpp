#include "backends/qt/symbols.h"

#include <QCoreApplication>
#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <array>
#include <utility>

namespace tarnix::qt {
namespace {

QString resourceOf(const QString& name) { return QStringLiteral(":/tarnix/symbols/%1.svg").arg(name); }

// The drawings name their tones: the primary one is `currentColor`, the secondary one `gray`.
QByteArray tinted(QByteArray drawing, const SymbolTint& tint) {
  drawing.replace("currentColor", tint.primary.name().toLatin1());
  return drawing.replace("\"gray\"", '"' + tint.secondary.name().toLatin1() + '"');
}

QPixmap rendered(const QString& name, int pixels, const SymbolTint& tint) {
  QPixmap pixmap(pixels, pixels);
  pixmap.fill(Qt::transparent);
  QFile file(resourceOf(name));
  if (!file.open(QIODevice::ReadOnly)) return pixmap;
  QSvgRenderer renderer(tinted(file.readAll(), tint));
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

}  // namespace

SymbolTint monochrome(const QColor& color) { return {color, color}; }

bool hasSymbol(const QString& name) { return !name.isEmpty() && QFile::exists(resourceOf(name)); }

QString symbolMeaning(const QString& name) {
  static constexpr std::array<std::pair<const char*, const char*>, 1> kMeanings{
      {{"sidebar.leading", QT_TRANSLATE_NOOP("tarnix", "Toggle Sidebar")}}};
  for (const auto& [symbol, meaning] : kMeanings) {
    if (name == QLatin1String(symbol)) return QCoreApplication::translate("tarnix", meaning);
  }
  return {};
}

QPixmap symbolPixmap(const QString& name, int side, double scale, const SymbolTint& tint) {
  const int pixels = qRound(side * scale);
  const QString key = QStringLiteral("tarnix:%1:%2:%3:%4")
                          .arg(name, QString::number(pixels), tint.primary.name(), tint.secondary.name());
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = rendered(name, pixels, tint);
    QPixmapCache::insert(key, pixmap);
  }
  pixmap.setDevicePixelRatio(scale);
  return pixmap;
}

void paintSymbol(QPainter& painter, const QRectF& square, const QString& name, const SymbolTint& tint) {
  if (!hasSymbol(name)) return;
  const double scale = painter.device()->devicePixelRatioF();
  const QPixmap pixmap = symbolPixmap(name, qRound(square.width()), scale, tint);
  // Whole device pixels keep the strokes sharp.
  const QPointF corner = square.topLeft() * scale;
  painter.drawPixmap(QPointF(qRound(corner.x()), qRound(corner.y())) / scale, pixmap);
}

}  // namespace tarnix::qt
