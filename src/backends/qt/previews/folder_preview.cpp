#include "backends/qt/previews/folder_preview.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include "backends/qt/previews/preview_texts.h"
#include "backends/qt/theme/focus_ring.h"

namespace tarnix::qt {
namespace {

constexpr int kSizeWidth = 110;
constexpr int kSideMargin = 10;

// Keeps the rows off the edges.
class EntryDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem inner = option;
    const bool isName = (index.column() == FolderModel::nameColumn) == (option.direction == Qt::LeftToRight);
    inner.rect.adjust(isName ? kSideMargin : 0, 0, isName ? 0 : -kSideMargin, 0);
    QStyledItemDelegate::paint(painter, inner, index);
  }
};

}  // namespace

FolderPreview::FolderPreview(QWidget* parent) : QTreeView(parent) {
  setModel(&model_);
  setItemDelegate(new EntryDelegate(this));
  setFrameShape(QFrame::NoFrame);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setHeaderHidden(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAllColumnsShowFocus(true);
  setTabKeyNavigation(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideMiddle);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(FolderModel::nameColumn, QHeaderView::Stretch);
  header()->setSectionResizeMode(FolderModel::sizeColumn, QHeaderView::Fixed);
  header()->resizeSection(FolderModel::sizeColumn, kSizeWidth);
}

void FolderPreview::setFolder(const previewing::Folder& folder) {
  model_.clear();
  setAccessibleName(texts::folderName(folder));
  scrollToTop();
}

void FolderPreview::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (!showsFocus(*this)) return;
  QPainter painter(viewport());
  paintFocusRingWithin(painter, viewport()->rect());
}

void FolderPreview::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  viewport()->update();
}

void FolderPreview::focusOutEvent(QFocusEvent* event) {
  QTreeView::focusOutEvent(event);
  viewport()->update();
}

}  // namespace tarnix::qt
