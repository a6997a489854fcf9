#pragma once

#include <QAbstractItemView>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "platform/swiftui/modifiers.h"

namespace tarnix::qt {

class ListModel;

// Shows the lines of a list model. It lays out only what is in sight: the scroll bar counts lines, not
// points, so that rows need not be measured to be passed over. One row at most is selected, by a click or the
// keys.
class RowView : public QAbstractItemView {
 public:
  // The model outlives the view.
  explicit RowView(ListModel& model, QWidget* parent = nullptr);

  // Whether the rows stand on a sidebar, or on a ground of their own.
  void setStyle(modifiers::ListStyle style);
  // To be called when the model shows something else.
  void refresh();
  // What is said in the middle of the room for rows, for want of any; nothing while it is empty.
  void setNotice(const QString& notice);
  // Selects the row, or none, and brings it into sight if asked to.
  void selectRow(std::optional<int> row, bool scrolls);
  // Rows in sight, from the first to the last, the cut ones included.
  std::vector<int> visibleRows() const;

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;
  void keyboardSearch(const QString&) override {}
  void selectAll() override {}

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  int horizontalOffset() const override { return 0; }
  int verticalOffset() const override { return 0; }
  bool isIndexHidden(const QModelIndex&) const override { return false; }
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;

  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void updateGeometries() override;
  void scrollContentsBy(int dx, int dy) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  // What lies at the upper edge: a line, and how many points of it are out of sight.
  struct Top {
    int line = 0;
    int hidden = 0;
    friend bool operator==(const Top&, const Top&) = default;
    friend bool operator<(const Top& a, const Top& b) {
      return std::tie(a.line, a.hidden) < std::tie(b.line, b.hidden);
    }
  };
  struct Placed {
    int line;
    QRect rect;
  };

  int heightOf(int line) const;
  std::vector<Placed> placedLines() const;
  // The top that brings the line's lower edge, and `below` points more, to the lower edge of the view.
  Top topForBottom(int line, int below) const;
  Top lastTop() const;
  void setTop(Top top);
  void scrollBy(int points);
  void adjustScrollBar();
  int barValue(Top top) const;
  Top topAt(int barValue) const;
  int pageFrom(int row, int direction) const;
  void layOutAgain();
  QStyleOptionViewItem optionFor(const QRect& rect) const;
  void paintHeader(QPainter& painter, const QRect& rect, const QString& header) const;
  void paintNotice(QPainter& painter) const;
  void paintRow(QPainter& painter, const QRect& rect, int row) const;

  ListModel& model_;
  bool isOnSidebar_ = true;
  Top top_;
  QString notice_;
  bool isAdjustingBar_ = false;
  bool isRevealing_ = false;  // The current row, until it has been painted: the view may yet get its size.
  double wheelRest_ = 0;
  mutable std::unordered_map<int, int> heights_;
};

}  // namespace tarnix::qt
