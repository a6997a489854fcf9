#pragma once

#include <QAbstractItemDelegate>

namespace tarnix::qt {

// Paints a row's elements (`RowLayout`): symbols in the accent, at most two lines of a text unless it says
// otherwise, the badge in a quiet pill; and the rounded ground of the selected row.
class RowDelegate : public QAbstractItemDelegate {
 public:
  using QAbstractItemDelegate::QAbstractItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  // For the width of the option's rectangle.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace tarnix::qt
