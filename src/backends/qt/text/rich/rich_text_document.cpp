#include "backends/qt/text/rich/rich_text_document.h"

#include <QTextBlock>
#include <QTextOption>
#include <algorithm>

#include "backends/qt/text/plain/plain_text_drawn.h"
#include "backends/qt/text/plain/plain_text_layout.h"
#include "backends/qt/text/rich/rich_text_formats.h"
#include "backends/qt/text/rich/rich_text_table.h"
#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

constexpr double kTabPoints = 36;

std::string_view bytesIn(const NSAttributedString& text, TextRange part) {
  return text.string().view().substr(part.begin, part.end - part.begin);
}

// The toolkit closes a document with a block, also behind a table.
void shrinkLastBlock(QTextDocument& document) {
  QTextCursor cursor(&document);
  cursor.movePosition(QTextCursor::End);
  QTextBlockFormat format;
  format.setLineHeight(1, QTextBlockFormat::FixedHeight);
  cursor.setBlockFormat(format);
  QTextCharFormat small;
  small.setFontPointSize(1);
  cursor.setBlockCharFormat(small);
}

}  // namespace

RichDocument::RichDocument(const NSAttributedString& text, const LayoutStyle& style)
    : text_(text), style_(&style), document_(std::make_unique<QTextDocument>()) {
  document_->setUndoRedoEnabled(false);
  document_->setDocumentMargin(0);
  document_->setDefaultFont(style.font);
}

RichDocument::~RichDocument() = default;

bool RichDocument::endsWithSeparator(std::size_t paragraph) const {
  const std::string_view text = text_.string();
  const char last = text[text_.paragraphs()[paragraph].end - 1];
  return last == '\n' || (last == '\t' && text_.paragraphs()[paragraph].cell > 0);
}

void RichDocument::fill(std::size_t paragraph, TextRange part) {
  QTextCursor cursor(document_.get());
  cursor.beginEditBlock();
  if (paragraph < text_.paragraphs().size()) writeParagraph(cursor, paragraph, part, style_->width);
  cursor.endEditBlock();
  finish(part.end, QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void RichDocument::fill(const TablePart& part, std::size_t end) {
  QTextCursor cursor(document_.get());
  cursor.beginEditBlock();
  RichTable(*this, part).write(cursor);
  shrinkLastBlock(*document_);
  cursor.endEditBlock();
  finish(end, QTextOption::WordWrap);
}

void RichDocument::writeParagraph(QTextCursor& cursor, std::size_t paragraph, TextRange part, int width) {
  const ParagraphStyle& style = text_.styleOf(text_.paragraphs()[paragraph]);
  const QString start = toQString(bytesIn(text_, {part.begin, std::min(part.end, part.begin + 256)}));
  cursor.setBlockFormat(blockFormat(style, readsFromTheRight(style, start), style_->font, width));
  const auto runs = text_.runs();
  auto run = std::ranges::upper_bound(runs, part.begin, {}, &NSAttributedString::Run::end);
  if (part.isEmpty() && run != runs.end())
    cursor.setBlockCharFormat(charFormat(text_.attributesOf(*run), *style_));
  for (std::size_t begin = part.begin; begin < part.end && run != runs.end(); ++run) {
    const std::size_t end = std::min<std::size_t>(part.end, run->end);
    writeRun(cursor, {begin, end}, text_.attributesOf(*run));
    begin = end;
  }
  note(cursor.position(), part.end);
}

void RichDocument::writeRun(QTextCursor& cursor, TextRange part, const TextAttributes& attributes) {
  QTextCharFormat format = charFormat(attributes, *style_);
  const std::string_view bytes = bytesIn(text_, part);
  DrawnText shown = drawn(bytes, style_->labelColor, DrawnControls::thoseOfNoText);
  if (!attributes.attachment.empty() && bytes == kAttachment) {
    shown.text = u'[' + titleStart(attributes.attachment) + u']';
    shown.offsets.assign(static_cast<std::size_t>(shown.text.size()), 0);
    format.setForeground(style_->labelColor);
  }
  for (qsizetype i = 0; i < shown.text.size(); ++i)
    note(cursor.position() + static_cast<int>(i), part.begin + shown.offsets[static_cast<std::size_t>(i)]);
  cursor.insertText(shown.text, format);
}

void RichDocument::layOut(QTextOption::WrapMode wrapMode) {
  QTextOption option = document_->defaultTextOption();
  option.setWrapMode(wrapMode);
  option.setTabStopDistance(kTabPoints * pixelsPerPoint());
  document_->setDefaultTextOption(option);
  document_->setTextWidth(style_->width);
}

void RichDocument::finish(std::size_t end, QTextOption::WrapMode wrapMode) {
  if (places_.empty()) note(0, end);
  const bool isEndless = hasEndlessWord(document_->toRawText());
  layOut(isEndless ? QTextOption::WrapAnywhere : wrapMode);
  // A word is cut only where it must be: a table would make its columns narrower than their words.
  if (wrapMode == QTextOption::WordWrap && document_->size().width() > style_->width + 1)
    layOut(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

int RichDocument::positionOf(std::size_t offset) const {
  const auto found = std::ranges::lower_bound(places_, offset, {}, &Place::offset);
  return found == places_.end() ? places_.back().position : found->position;
}

std::size_t RichDocument::offsetOf(int position) const {
  const auto found = std::ranges::lower_bound(places_, position, {}, &Place::position);
  return found == places_.end() ? places_.back().offset : found->offset;
}

}  // namespace tarnix::qt
