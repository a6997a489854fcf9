#include "backends/qt/previews/text_preview.h"

#include <QFontDatabase>
#include <QVBoxLayout>

#include "backends/qt/previews/preview_texts.h"

namespace tarnix::qt {

TextPreview::TextPreview(QWidget* parent)
    : QWidget(parent), text_(new PlainTextView(this)), part_(new QLabel(this)) {
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setAccessibleName(texts::textName());
  part_->setTextFormat(Qt::PlainText);
  part_->setForegroundRole(QPalette::PlaceholderText);
  part_->setAlignment(Qt::AlignCenter);
  part_->setContentsMargins(8, 6, 8, 6);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(text_, 1);
  layout->addWidget(part_);
  setFocusProxy(text_);
}

void TextPreview::setText(const PreviewText& text) {
  text_->setText(text.text);
  part_->setVisible(text.shownBytes < text.fileBytes);
  part_->setText(texts::partShown(text.shownBytes, text.fileBytes));
}

}  // namespace tarnix::qt
