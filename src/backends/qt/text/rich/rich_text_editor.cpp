#include "backends/qt/text/rich/rich_text_editor.h"

#include <QTextBlock>
#include <algorithm>
#include <utility>

#include "backends/qt/text/rich/rich_text_formats.h"
#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

// What the parts of the document were in the text that it was made of, so that what stays comes back as it
// was.
enum Property {
  kAttributes = QTextFormat::UserProperty + 16,
  kStyle,
  kCell,
  kEndAttributes,  // Of the end of a paragraph.
};

QString unicodeOf(std::string_view utf8) { return QString::fromUtf8(utf8.data(), qsizetype(utf8.size())); }

class Filling {
 public:
  Filling(const NSAttributedString& text, const LayoutStyle& style, QTextDocument& document)
      : text_(text), style_(style), cursor_(&document) {}

  void run() {
    const std::string_view bytes = text_.string();
    std::size_t begin = 0;
    for (const auto& paragraph : text_.paragraphs()) {
      const bool isEnded =
          bytes[paragraph.end - 1] == '\n' || (paragraph.cell > 0 && bytes[paragraph.end - 1] == '\t');
      write(paragraph, begin, paragraph.end - (isEnded ? 1 : 0));
      if (isEnded) cursor_.insertBlock();
      begin = paragraph.end;
    }
  }

 private:
  void write(const NSAttributedString::Paragraph& paragraph, std::size_t begin, std::size_t end) {
    const ParagraphStyle& style = text_.styleOf(paragraph);
    const QString start =
        unicodeOf(text_.string().view().substr(begin, std::min<std::size_t>(end - begin, 256)));
    QTextBlockFormat format = blockFormat(style, readsFromTheRight(style, start), style_.font, style_.width);
    format.setTopMargin(spaceBefore(style));
    format.setBottomMargin(spaceAfter(style));
    format.setProperty(kStyle, static_cast<int>(paragraph.style));
    format.setProperty(kCell, static_cast<int>(paragraph.cell));
    const auto runs = text_.runs();
    while (runs[run_].end <= begin) ++run_;
    const auto last = std::ranges::lower_bound(runs, paragraph.end, {}, &NSAttributedString::Run::end);
    format.setProperty(kEndAttributes, static_cast<int>(last->attributes));
    cursor_.setBlockFormat(format);
    cursor_.setBlockCharFormat(formatOf(runs[run_]));
    for (std::size_t at = begin; at < end;) {
      const auto& run = runs[run_];
      const std::size_t stop = std::min<std::size_t>(run.end, end);
      cursor_.insertText(unicodeOf(text_.string().view().substr(at, stop - at)), formatOf(run));
      at = stop;
      if (run.end <= at && run_ + 1 < runs.size()) ++run_;
    }
  }

  QTextCharFormat formatOf(const NSAttributedString::Run& run) const {
    QTextCharFormat format = charFormat(text_.attributesOf(run), style_);
    format.setProperty(kAttributes, static_cast<int>(run.attributes));
    return format;
  }

  const NSAttributedString& text_;
  const LayoutStyle& style_;
  QTextCursor cursor_;
  std::size_t run_ = 0;
};

// A paragraph of a cell ends as its cell does where the next one is in another.
char separatorOf(const QTextBlock& block, const NSAttributedString& text) {
  const int cell = block.blockFormat().intProperty(kCell);
  const int next = block.next().blockFormat().intProperty(kCell);
  if (cell == 0 || next == 0 || cell == next) return '\n';
  const TableCell& here = text.cells()[static_cast<std::size_t>(cell) - 1];
  const TableCell& there = text.cells()[static_cast<std::size_t>(next) - 1];
  return here.table == there.table && here.row == there.row ? '\t' : '\n';
}

}  // namespace

void RichTextEditor::setAttributedText(const NSAttributedString& text, const TextColors& colors) {
  if (text == shown_ && colors == colors_) return;
  shown_ = text;
  colors_ = colors;
  change([this] { fill(); });
}

void RichTextEditor::fill() {
  filled_ = shown_;
  const bool isUndoEnabled = isUndoRedoEnabled();
  setUndoRedoEnabled(false);
  clear();
  const LayoutStyle style{font(), std::max(viewport()->width(), 1), colors_->text, *colors_};
  Filling(filled_, style, *document()).run();
  setUndoRedoEnabled(isUndoEnabled);
  moveCursor(QTextCursor::Start);
}

void RichTextEditor::noteEdited() {
  shown_ = written();
  if (edited_) edited_(shown_);
}

// What is written beside a picture doesn't become one.
void RichTextEditor::appendFragment(AttributedStringBuilder& builder, const QTextFragment& fragment) const {
  TextAttributes attributes = attributesIn(fragment.charFormat(), kAttributes);
  const String name = std::exchange(attributes.attachment, String());
  for (const QChar unit : name.empty() ? QString() : fragment.text()) {
    TextAttributes own = attributes;
    if (unit == QChar::ObjectReplacementCharacter) own.attachment = name;
    builder.append(fromQString(QString(unit)), own);
  }
  if (name.empty()) builder.append(fromQString(fragment.text()), attributes);
}

TextAttributes RichTextEditor::attributesIn(const QTextFormat& format, int property) const {
  const bool isKnown = format.hasProperty(property) && !filled_.attributes().empty();
  return isKnown ? filled_.attributes()[static_cast<std::size_t>(format.intProperty(property))]
                 : TextAttributes();
}

NSAttributedString RichTextEditor::written() const {
  AttributedStringBuilder builder;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    for (auto each = block.begin(); !each.atEnd(); ++each) appendFragment(builder, each.fragment());
    const QTextBlockFormat format = block.blockFormat();
    const bool isKnown = format.hasProperty(kStyle) && !filled_.styles().empty();
    const std::uint32_t style = builder.add(
        isKnown ? filled_.styles()[static_cast<std::size_t>(format.intProperty(kStyle))] : ParagraphStyle());
    const int cell = format.intProperty(kCell);
    const TableCell* const place = cell == 0 ? nullptr : &filled_.cells()[static_cast<std::size_t>(cell) - 1];
    if (block.next().isValid()) {
      builder.endParagraph(separatorOf(block, filled_), builder.add(attributesIn(format, kEndAttributes)),
                           style, place);
    } else {
      builder.endText(style, place);
    }
  }
  return builder.take();
}

}  // namespace tarnix::qt
