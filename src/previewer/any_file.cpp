#include <QMimeDatabase>

#include "previewer/answers.h"
#include "previewer/text_decoding.h"

namespace tarnix::previewer {
namespace {

constexpr std::size_t kSampleOfKind = 64 * 1024;

Information informationOf(const OpenedFile& file, std::string_view bytes) {
  const std::string_view sample = bytes.substr(0, kSampleOfKind);
  const QMimeType type = QMimeDatabase().mimeTypeForData(
      QByteArray::fromRawData(sample.data(), static_cast<qsizetype>(sample.size())));
  Information information;
  information.kind = (type.comment().isEmpty() ? type.name() : type.comment()).toStdString();
  information.iconName = type.iconName().toStdString();
  information.genericIconName = type.genericIconName().toStdString();
  information.bytes = file.size();
  information.modified = file.modified();
  information.created = file.created();
  return information;
}

}  // namespace

void answerAnyFile(const Channel& channel, const OpenedFile& file) {
  const auto bytes = file.beginning(kMostTextBytes);
  if (!bytes) return channel.refuse(Reason::unreadable);
  const bool isPart = bytes->size() == kMostTextBytes && file.size() > bytes->size();
  if (const auto text = bytes->empty() ? std::nullopt : decodedText(*bytes, isPart)) {
    const std::uint64_t whole = isPart ? file.size() : bytes->size();
    return channel.send(MessageKind::text, headOf(Text{bytes->size(), whole, {}}), *text);
  }
  channel.send(MessageKind::information, payloadOf(informationOf(file, *bytes)));
}

}  // namespace tarnix::previewer
