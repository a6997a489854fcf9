#include "backends/qt/theme/symbols.h"

#include <QCoreApplication>
#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

QString resourceOf(const QString& name) { return QStringLiteral(":/tarnix/symbols/%1.svg").arg(name); }

constexpr double kStroke = 1.3;
constexpr double kDrawnSide = 16;

// In the drawing's own units: larger symbols have relatively finer strokes, as larger letters do.
double strokeFor(int side) {
  return kStroke * std::pow(kDrawnSide / std::max<double>(side, kDrawnSide), 0.45);
}

// The drawings name their tones: the primary one is `currentColor`, the secondary one `gray`.
QByteArray styled(QByteArray drawing, int side, const SymbolTint& tint) {
  drawing.replace("stroke-width=\"1.3\"", "stroke-width=\"" + QByteArray::number(strokeFor(side)) + '"');
  drawing.replace("currentColor", tint.primary.name().toLatin1());
  return drawing.replace("\"gray\"", '"' + tint.secondary.name().toLatin1() + '"');
}

QPixmap rendered(const QString& name, int side, int pixels, const SymbolTint& tint) {
  QPixmap pixmap(pixels, pixels);
  pixmap.fill(Qt::transparent);
  QFile file(resourceOf(name));
  if (!file.open(QIODevice::ReadOnly)) return pixmap;
  QSvgRenderer renderer(styled(file.readAll(), side, tint));
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

}  // namespace

SymbolTint monochrome(const QColor& color) { return {color, color}; }

bool hasSymbol(const QString& name) { return !name.isEmpty() && QFile::exists(resourceOf(name)); }

QString symbolMeaning(const QString& name) {
  struct Meaning {
    const char* symbol;
    LocalizedKey text;
  };
  static constexpr auto kMeanings = std::to_array<Meaning>(
      {{"sidebar.leading", "Toggle Sidebar"}, {"info.bubble", "Information"}, {"paperclip", "Copy"}});
  for (const Meaning& each : kMeanings) {
    if (name == QLatin1String(each.symbol)) return localized(each.text);
  }
  return {};
}

QPixmap symbolPixmap(const QString& name, int side, double scale, const SymbolTint& tint) {
  const int pixels = qRound(side * scale);
  const QString key = QStringLiteral("tarnix:%1:%2:%3:%4:%5")
                          .arg(name, QString::number(side), QString::number(pixels), tint.primary.name(),
                               tint.secondary.name());
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = rendered(name, side, pixels, tint);
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
