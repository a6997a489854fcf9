#include <unistd.h>

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

#include "previewer/answers.h"
#include "previewer/drawing_cleaning.h"

namespace tarnix::previewer {
namespace {

constexpr int kMostMegabytes = 64;
constexpr std::int64_t kMostStoredPixels = 200'000'000;
constexpr std::uint64_t kMostDrawingBytes = 8 * 1024 * 1024;

// What is wanted of a picture of this size: never more than there is, nor than is sent.
QSize sentSize(QSize stored, QSize wanted) {
  if (stored.width() > wanted.width() || stored.height() > wanted.height())
    stored.scale(wanted, Qt::KeepAspectRatio);
  const double pixels = static_cast<double>(stored.width()) * stored.height();
  if (pixels > kMostPixels) stored *= std::sqrt(kMostPixels / pixels) * 0.999;
  return stored.expandedTo({1, 1});
}

std::uint32_t side(int length) { return static_cast<std::uint32_t>(std::max(length, 0)); }

void send(const Channel& channel, QImage image, QSize stored) {
  image.convertTo(QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return channel.refuse(Reason::tooMuchMemory);
  const Image head{
      side(stored.width()), side(stored.height()), side(image.width()), side(image.height()), {}};
  const auto* const pixels = reinterpret_cast<const char*>(image.constBits());
  channel.send(MessageKind::image, headOf(head), {pixels, static_cast<std::size_t>(image.sizeInBytes())});
}

QSize wantedSize(const OpenRequest& request) {
  constexpr std::uint32_t kMostSide = 16'384;
  return {static_cast<int>(std::min(request.width, kMostSide)),
          static_cast<int>(std::min(request.height, kMostSide))};
}

Reason reasonOf(QImageReader& reader, QSize stored) {
  // Decoders say only that they failed. Where the picture would not have fitted, that is most likely why.
  constexpr std::int64_t kLargePicture = 10'000'000;
  const bool isLarge = std::int64_t{stored.width()} * stored.height() > kLargePicture;
  return isLarge && reader.error() == QImageReader::InvalidDataError ? Reason::tooMuchMemory
                                                                     : Reason::damaged;
}

}  // namespace

void answerPicture(const Channel& channel, const OpenedFile& file, const OpenRequest& request,
                   const char* format) {
  QImageReader::setAllocationLimit(kMostMegabytes);
  QFile device;
  if (!device.open(file.descriptor(), QIODevice::ReadOnly)) return channel.refuse(Reason::unreadable);
  device.seek(0);
  QImageReader reader(&device, format);
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  if (!QImageReader::supportedImageFormats().contains(format)) return answerAnyFile(channel, file);
  const QSize stored = reader.size();
  if (stored.isEmpty()) return channel.refuse(Reason::damaged);
  if (std::int64_t{stored.width()} * stored.height() > kMostStoredPixels) {
    return channel.send(MessageKind::refusal,
                        payloadOf(Refusal{Reason::tooLarge, side(stored.width()), side(stored.height())}));
  }
  const bool isTurned = (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
  const QSize shown = isTurned ? stored.transposed() : stored;
  const QSize sent = sentSize(shown, wantedSize(request));
  if (sent != shown) reader.setScaledSize(isTurned ? sent.transposed() : sent);
  QImage image = reader.read();
  if (image.isNull()) return channel.refuse(reasonOf(reader, stored));
  if (std::int64_t{image.width()} * image.height() > kMostPixels) image = image.scaled(sent);
  send(channel, std::move(image), shown);
}

void answerDrawing(const Channel& channel, const OpenedFile& file, const OpenRequest& request) {
  if (file.size() > kMostDrawingBytes) return answerAnyFile(channel, file);
  const auto source = file.beginning(kMostDrawingBytes);
  if (!source) return channel.refuse(Reason::unreadable);
  const auto cleaned =
      cleanedDrawing(QByteArray::fromRawData(source->data(), static_cast<qsizetype>(source->size())));
  if (!cleaned) return channel.refuse(Reason::damaged);
  QSvgRenderer renderer(*cleaned);
  const QSizeF points = renderer.isValid() ? QSizeF(renderer.defaultSize()) : QSizeF();
  if (points.isEmpty()) return channel.refuse(Reason::damaged);
  const QSizeF pixels = points * (request.scale / 100.0);
  const QSize sent = sentSize(pixels.boundedTo({1e6, 1e6}).toSize().expandedTo({1, 1}), wantedSize(request));
  QImage image(sent, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return channel.refuse(Reason::tooMuchMemory);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  renderer.render(&painter);
  painter.end();
  send(channel, std::move(image), points.boundedTo({1e6, 1e6}).toSize().expandedTo({1, 1}));
}

}  // namespace tarnix::previewer
