#include "backends/qt/search_field.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>

#include "backends/qt/symbol_button.h"
#include "backends/qt/symbols.h"

namespace tarnix::qt {
namespace {

constexpr int kHeight = 30;
constexpr int kSymbolSide = 14;
constexpr int kInset = 9;
constexpr int kClearSide = 13;

QString localized(const char* key) { return QCoreApplication::translate("tarnix", key); }

}  // namespace

SearchField::SearchField(QWidget* parent) : QLineEdit(parent), clear_(new SymbolButton(this)) {
  setPlaceholderText(localized("Search"));
  setAccessibleName(localized("Search"));
  setMinimumHeight(kHeight);
  setTextMargins(kInset + kSymbolSide + 4, 0, kHeight - 2, 0);
  clear_->setSymbol(QStringLiteral("xmark.circle"), kClearSide);
  clear_->setTitle(localized("Clear search"), false);
  clear_->setForegroundRole(QPalette::PlaceholderText);
  clear_->setFocusPolicy(Qt::NoFocus);
  clear_->setCursor(Qt::ArrowCursor);
  clear_->hide();
  connect(clear_, &QAbstractButton::clicked, this, &QLineEdit::clear);
  connect(this, &QLineEdit::textChanged, clear_,
          [this](const QString& text) { clear_->setVisible(!text.isEmpty()); });
  auto* const find = new QShortcut(QKeySequence::Find, this);
  connect(find, &QShortcut::activated, this, [this] {
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
  });
}

QSize SearchField::sizeHint() const {
  return {QLineEdit::sizeHint().width(), qMax(kHeight, fontMetrics().height() + 12)};
}

void SearchField::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  QPainter painter(this);
  const int left = isRightToLeft() ? width() - kInset - kSymbolSide : kInset;
  paintSymbol(painter, QRectF(left, (height() - kSymbolSide) / 2.0, kSymbolSide, kSymbolSide),
              QStringLiteral("magnifyingglass"), monochrome(palette().color(QPalette::PlaceholderText)));
}

void SearchField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  const QSize size = clear_->sizeHint();
  const int left = isRightToLeft() ? 2 : width() - size.width() - 2;
  clear_->setGeometry(QRect(QPoint(left, (height() - size.height()) / 2), size));
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
    clear();
  } else if (event->key() == Qt::Key_Down && leave_) {
    leave_();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

}  // namespace tarnix::qt
