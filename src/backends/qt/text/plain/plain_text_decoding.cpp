#include "backends/qt/text/plain/plain_text_decoding.h"

namespace tarnix::qt {
bool continuesCluster(char32_t value) {
  if (value < 0x300) return false;
  const bool isEmojiModifier = value >= 0x1F3FB && value <= 0x1F3FF;
  return QChar::isMark(value) || value == 0x200C || value == 0x200D || isEmojiModifier;
}

std::size_t utf16Length(std::string_view bytes) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t ascii = asciiPrefix(bytes.substr(i));
    units += ascii;
    i += ascii;
    if (i == bytes.size()) break;
    const CodePoint point = codePointAt(bytes, i);
    units += utf16Length(point.value);
    i += point.length;
  }
  return units;
}

QString decoded(std::string_view bytes) {
  QString text;
  text.reserve(static_cast<qsizetype>(bytes.size()));
  for (std::size_t i = 0; i < bytes.size();) {
    const CodePoint point = codePointAt(bytes, i);
    text.append(QChar::fromUcs4(point.value));
    i += point.length;
  }
  return text;
}

}  // namespace tarnix::qt
