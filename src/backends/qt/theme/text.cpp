#include "backends/qt/theme/text.h"

#include <algorithm>

#include "platform/foundation/bundle.h"
#include "platform/foundation/utf8.h"

namespace tarnix::qt {
namespace {

// Four bytes can stand for at most two units and at least one, so this many hold `kTitleLimit` units.
std::string_view leadingBytes(std::string_view text) {
  std::size_t end = std::min(text.size(), static_cast<std::size_t>(kTitleLimit) * 4);
  while (end > 0 && end < text.size() && isUtf8Continuation(text[end])) --end;
  return text.substr(0, end);
}

bool isControl(QChar character) {
  return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

bool isUnspeakable(QChar character) {
  return isControl(character) && character != u'\n' && character != u'\t';
}

}  // namespace

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

String fromQString(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  return String(std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())));
}

QString localized(LocalizedKey key) { return localizedText(String(key.key())); }

QString localizedText(const String& key) {
  return toQString(NSBundle::mainBundle().localizedStringForKey(key));
}

QString shownText(const elements::Text& text) {
  return text.isVerbatim ? toQString(text.text) : localizedText(text.text);
}

QString shownTitle(const LabelParts& label) {
  return label.isVerbatim ? toQString(label.title) : localizedText(label.title);
}

QString titleStart(std::string_view title) {
  const std::string_view bytes = leadingBytes(title);
  QString start = toQString(bytes);
  const bool isCut = bytes.size() < title.size() || start.size() > kTitleLimit;
  if (start.size() > kTitleLimit) {
    start.truncate(start.at(kTitleLimit).isLowSurrogate() ? kTitleLimit - 1 : kTitleLimit);
  }
  std::replace_if(start.begin(), start.end(), isUnspeakable, QChar(u' '));
  return isCut ? start + QChar(u'…') : start;
}

QString placeholderFor(const QString& title) {
  if (title.isEmpty()) return localized("Empty text");
  return title.trimmed().isEmpty() ? localized("Blank text") : QString();
}

QString singleLine(const QString& title) {
  QString line;
  line.reserve(title.size());
  bool isAfterBreak = true;
  for (const QChar character : title) {
    const bool isBreak = isControl(character);
    if (isBreak && !isAfterBreak) {
      while (line.endsWith(u' ')) line.chop(1);
      line += u' ';
    } else if (!isBreak && !(isAfterBreak && character.isSpace())) {
      line += character;
    }
    isAfterBreak = isBreak || (isAfterBreak && character.isSpace());
  }
  return line;
}

}  // namespace tarnix::qt
