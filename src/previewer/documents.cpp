#include <QFile>
#include <QPdfDocument>
#include <algorithm>
#include <cmath>

#include "previewer/answers.h"
#include "previewer/limits.h"

namespace tarnix::previewer {
namespace {

// What no page is smaller or larger than, in points.
constexpr double kLeastPageSide = 1;
constexpr double kMostPageSide = 14'400;

float sideOf(double points) {
  return static_cast<float>(std::isfinite(points) ? std::clamp(points, kLeastPageSide, kMostPageSide)
                                                  : kLeastPageSide);
}

Document documentOf(const QPdfDocument& pdf) {
  const int pages = pdf.pageCount();
  Document document{static_cast<std::uint32_t>(pages), {}};
  for (int page = 0; page < std::min<int>(pages, kMostPages); ++page) {
    const QSizeF size = pdf.pagePointSize(page);
    document.sizes.emplace_back(sideOf(size.width()), sideOf(size.height()));
  }
  return document;
}

// A page that can't be drawn is blank.
void answerPage(const Channel& channel, QPdfDocument& pdf, const PageRequest& request) {
  const QSize size(static_cast<int>(request.width), static_cast<int>(request.height));
  const QImage drawn =
      pdf.render(static_cast<int>(request.page), size).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QImage image = drawn.size() == size ? drawn : QImage(size, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return channel.refuse(Reason::tooMuchMemory);
  if (drawn.size() != size) image.fill(Qt::transparent);
  const auto* const pixels = reinterpret_cast<const char*>(image.constBits());
  channel.send(MessageKind::pageImage, headOf(PageImage{request.page, request.width, request.height, {}}),
               {pixels, static_cast<std::size_t>(image.sizeInBytes())});
}

}  // namespace

void answerDocument(const Channel& channel, const OpenedFile& file) {
  QFile device;
  if (!device.open(file.descriptor(), QIODevice::ReadOnly)) return channel.refuse(Reason::unreadable);
  QPdfDocument pdf;
  pdf.load(&device);
  if (pdf.error() == QPdfDocument::Error::IncorrectPassword ||
      pdf.error() == QPdfDocument::Error::UnsupportedSecurityScheme)
    return channel.refuse(Reason::encrypted);
  if (pdf.status() != QPdfDocument::Status::Ready || pdf.pageCount() <= 0)
    return channel.refuse(Reason::damaged);
  const Document document = documentOf(pdf);
  channel.send(MessageKind::document, payloadOf(document));
  while (const auto message = channel.receive()) {
    const auto request =
        message->kind == MessageKind::page ? pageRequestFrom(message->payload) : std::nullopt;
    if (!request || request->page >= document.sizes.size()) return;
    allowProcessorTime();
    answerPage(channel, pdf, *request);
  }
}

}  // namespace tarnix::previewer
