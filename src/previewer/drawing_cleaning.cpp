#include "previewer/drawing_cleaning.h"

#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace tarnix::previewer {
namespace {

constexpr int kMostElements = 100'000;
constexpr int kMostDepth = 200;
// References among references multiply.
constexpr int kMostUses = 200;

bool isReference(QStringView name) { return name == u"href" || name == u"src" || name == u"base"; }

bool isOwnReference(const QString& value) {
  const QString target = value.trimmed();
  return target.startsWith(u'#') || target.startsWith(QLatin1String("data:image/png"), Qt::CaseInsensitive) ||
         target.startsWith(QLatin1String("data:image/jpeg"), Qt::CaseInsensitive);
}

// Of a style: references to elsewhere, and what an escape may hide.
bool isSafeStyle(const QString& value) {
  static const QRegularExpression foreign(QStringLiteral(R"(@import|\\|url\s*\(\s*['"]?\s*(?!#)[^'"\s])"),
                                          QRegularExpression::CaseInsensitiveOption);
  return !foreign.match(value).hasMatch();
}

bool isLeftOut(QStringView element) {
  return element == u"script" || element == u"foreignObject" || element == u"handler" ||
         element == u"listener";
}

class Cleaning {
 public:
  explicit Cleaning(const QByteArray& svg) : reader_(svg), writer_(&cleaned_) {}

  std::optional<QByteArray> run() {
    while (!reader_.atEnd() && isWithinLimits()) copy(reader_.readNext());
    const bool isGood = !reader_.hasError() && isWithinLimits();
    return isGood ? std::optional(cleaned_) : std::nullopt;
  }

 private:
  bool isWithinLimits() const {
    return elements_ <= kMostElements && depth_ <= kMostDepth && uses_ <= kMostUses;
  }

  void copy(QXmlStreamReader::TokenType token) {
    switch (token) {
      case QXmlStreamReader::StartElement:
        return start();
      case QXmlStreamReader::EndElement:
        --depth_;
        writer_.writeEndElement();
        return;
      case QXmlStreamReader::Characters:
        if (const QString text = reader_.text().toString(); isSafeStyle(text) || !isInStyle_)
          writer_.writeCharacters(text);
        return;
      case QXmlStreamReader::EntityReference:
        reader_.raiseError(QStringLiteral("entity"));
        return;
      default:
        return;  // Document types, comments and instructions.
    }
  }

  void start() {
    ++elements_;
    if (isLeftOut(reader_.name())) return reader_.skipCurrentElement();
    ++depth_;
    isInStyle_ = reader_.name() == u"style";
    uses_ += reader_.name() == u"use" ? 1 : 0;
    const QString space = reader_.namespaceUri().toString();
    if (space.isEmpty())
      writer_.writeStartElement(reader_.name().toString());
    else
      writer_.writeStartElement(space, reader_.name().toString());
    for (const QXmlStreamAttribute& each : reader_.attributes()) {
      const QString value = each.value().toString();
      const bool isKept = isReference(each.name()) ? isOwnReference(value) : isSafeStyle(value);
      if (isKept) writer_.writeAttribute(each);
    }
  }

  QByteArray cleaned_;
  QXmlStreamReader reader_;
  QXmlStreamWriter writer_;
  int elements_ = 0;
  int depth_ = 0;
  int uses_ = 0;
  bool isInStyle_ = false;
};

}  // namespace

std::optional<QByteArray> cleanedDrawing(const QByteArray& svg) { return Cleaning(svg).run(); }

}  // namespace tarnix::previewer
