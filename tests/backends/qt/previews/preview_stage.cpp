#include "backends/qt/previews/preview_stage.h"

#include <sys/stat.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QImageWriter>
#include <QStackedLayout>
#include <QtEndian>
#include <QtTest>
#include <fstream>
#include <utility>

namespace tarnix::qt {
namespace {

constexpr int kLongestWait = 20'000;  // Milliseconds; reached only where nothing comes.

std::string bigEndian(quint32 number) {
  const quint32 swapped = qToBigEndian(number);
  return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

quint32 checksum(std::string_view bytes) {
  quint32 sum = 0xffffffff;
  for (const char each : bytes) {
    sum ^= static_cast<unsigned char>(each);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
  }
  return ~sum;
}

std::string chunk(const std::string& type, const std::string& data) {
  return bigEndian(static_cast<quint32>(data.size())) + type + data + bigEndian(checksum(type + data));
}

}  // namespace

PreviewStage::PreviewStage() {
  PreviewerProcess::setProgram(TARNIX_PREVIEWER);
  widget.resize(600, 512);  // With what is left free below the preview.
  widget.show();
}

PreviewStage::~PreviewStage() {
  widget.clear();
  PreviewerProcess::setProgram({});
}

QWidget* PreviewStage::shownPart() const { return widget.findChild<QStackedLayout*>()->currentWidget(); }

std::string PreviewStage::shownName() const {
  const QWidget* part = shownPart();
  if (part != nullptr && part->focusProxy() != nullptr) part = part->focusProxy();
  return part == nullptr ? std::string() : part->accessibleName().toStdString();
}

QAccessible::Role PreviewStage::shownRole() const {
  QWidget* const part = shownPart()->focusProxy() != nullptr ? shownPart()->focusProxy() : shownPart();
  return QAccessible::queryAccessibleInterface(part)->role();
}

std::string PreviewStage::nameOfPreview(PreviewSource source, const QString& name) {
  widget.clear();
  widget.setSource(std::move(source), name);
  QElapsedTimer waited;
  waited.start();
  while ((shownPart() == nullptr || shownName() == "Loading…") && waited.elapsed() < kLongestWait) {
    QElapsedTimer turn;
    turn.start();
    QCoreApplication::processEvents();
    longestTurn = std::max(longestTurn, std::chrono::milliseconds(turn.elapsed()));
    noteMemory();
    QThread::usleep(500);
  }
  return shownName();
}

void PreviewStage::noteMemory() {
  std::ifstream status("/proc/" + std::to_string(widget.client().processId()) + "/status");
  for (std::string line; std::getline(status, line);) {
    constexpr std::string_view kPeak = "VmHWM:";
    if (line.starts_with(kPeak))
      peakMemory = std::max(peakMemory, std::stoul(line.substr(kPeak.size())) * 1024);
  }
}

std::string PreviewStage::file(std::string_view name, std::string_view contents) const {
  linux_desktop::writeFile(folder / name, contents);
  return (folder / name).string();
}

void PreviewStage::useScript(std::string_view script) const {
  const std::string path = file("previewer.sh", "#!/bin/sh\n" + std::string(script));
  chmod(path.c_str(), 0755);
  PreviewerProcess::setProgram(path);
}

std::string pngFile(QSize size, bool hasPixels) {
  const std::string head = bigEndian(static_cast<quint32>(size.width())) +
                           bigEndian(static_cast<quint32>(size.height())) + std::string("\x08\x06\0\0\0", 5);
  std::string packed;
  if (hasPixels) {
    const QByteArray row(1 + 4 * size.width(), '\0');
    packed = qCompress(row.repeated(size.height())).mid(4).toStdString();
  }
  return "\x89PNG\r\n\x1a\n" + chunk("IHDR", head) + chunk("IDAT", packed) + chunk("IEND", "");
}

std::string pictureFile(QSize size, const char* format, bool isProgressive) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(QColor(200, 100, 50));
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  writer.setProgressiveScanWrite(isProgressive);
  EXPECT_TRUE(writer.write(image)) << format;
  return buffer.data().toStdString();
}

std::string pdfFile(int pages, bool isEncrypted) {
  std::string kids;
  for (int page = 0; page < pages; ++page) kids += std::to_string(4 + page) + " 0 R ";
  const std::string content = "1 0 0 rg 100 100 300 300 re f";
  std::vector<std::string> objects{
      "<< /Type /Catalog /Pages 2 0 R >>",
      "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages) + " >>",
      "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream"};
  for (int page = 0; page < pages; ++page)
    objects.emplace_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 3 0 R >>");
  std::string pdf = "%PDF-1.4\n";
  std::string places;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    places += QString("%1 00000 n \n").arg(pdf.size(), 10, 10, QChar('0')).toStdString();
    pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const std::string table = std::to_string(pdf.size());
  const std::string keys(32, 'k');
  const std::string lock = "/Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O (" + keys + ") /U (" + keys +
                           ") >> /ID [(0123456789abcdef) (0123456789abcdef)] ";
  return pdf + "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n" + places +
         "trailer << /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R " +
         (isEncrypted ? lock : "") + ">>\nstartxref\n" + table + "\n%%EOF\n";
}

}  // namespace tarnix::qt
