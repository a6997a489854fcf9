#include "backends/qt/rows/row_view_accessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <unordered_map>

#include "backends/qt/rows/list_model.h"
#include "backends/qt/rows/row_view.h"

namespace tarnix::qt {
namespace {

const ListModel& modelOf(const RowView& view) { return static_cast<const ListModel&>(*view.model()); }

// A row, known by its position as long as there is one there.
class RowAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowAccessible(RowView& view, int row) : view_(&view), row_(row) {}

  bool isValid() const override { return view_ && row_ < modelOf(*view_).rowCount(); }
  QObject* object() const override { return nullptr; }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(view_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Name) return modelOf(*view_).data(index(), Qt::AccessibleTextRole).toString();
    if (kind != QAccessible::Description) return {};
    return modelOf(*view_).data(index(), Qt::AccessibleDescriptionRole).toString();
  }
  void setText(QAccessible::Text, const QString&) override {}

  QRect rect() const override {
    if (!isValid()) return {};
    const QRect rect = view_->visualRect(index());
    return {view_->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.selectable = true;
    state.focusable = true;
    state.selected = view_->selectionModel()->isSelected(index());
    state.focused = view_->hasFocus() && view_->currentIndex() == index();
    state.offscreen = !view_->viewport()->rect().intersects(view_->visualRect(index()));
    state.invisible = !view_->isVisible();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }
  void doAction(const QString& action) override {
    if (isValid() && action == pressAction()) {
      view_->selectionModel()->setCurrentIndex(index(), QItemSelectionModel::ClearAndSelect);
    }
  }

  int row() const { return row_; }

 private:
  QModelIndex index() const { return modelOf(*view_).index(row_); }

  QPointer<RowView> view_;
  int row_;
};

class RowViewAccessible : public QAccessibleWidget {
 public:
  explicit RowViewAccessible(RowView& view) : QAccessibleWidget(&view, QAccessible::List), view_(view) {}
  ~RowViewAccessible() override {
    for (const auto& [row, id] : rows_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return modelOf(view_).rowCount(); }

  QAccessibleInterface* child(int position) const override {
    if (position < 0 || position >= childCount()) return nullptr;
    const auto known = rows_.find(position);
    if (known != rows_.end()) return QAccessible::accessibleInterface(known->second);
    auto* const row = new RowAccessible(view_, position);  // Owned by the register of interfaces.
    rows_.emplace(position, QAccessible::registerAccessibleInterface(row));
    return row;
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    return row == nullptr || row->parent() != this ? -1 : row->row();
  }

  QAccessibleInterface* childAt(int x, int y) const override {
    const QModelIndex index = view_.indexAt(view_.viewport()->mapFromGlobal(QPoint(x, y)));
    return index.isValid() ? child(index.row()) : nullptr;
  }

  QAccessibleInterface* focusChild() const override {
    const QModelIndex current = view_.currentIndex();
    return view_.hasFocus() && current.isValid() ? child(current.row()) : nullptr;
  }

  QString text(QAccessible::Text kind) const override {
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? modelOf(view_).firstHeader() : given;
  }

  bool isKnown(int row) const { return rows_.contains(row); }

  void forgetLostRows() {
    const auto isLost = [&](const auto& entry) { return entry.first >= childCount(); };
    for (const auto& entry : rows_) {
      if (isLost(entry)) QAccessible::deleteAccessibleInterface(entry.second);
    }
    std::erase_if(rows_, isLost);
  }

 private:
  RowView& view_;
  mutable std::unordered_map<int, QAccessible::Id> rows_;
};

QAccessibleInterface* makeRowsAccessible(const QString&, QObject* object) {
  auto* const view = dynamic_cast<RowView*>(object);
  return view == nullptr ? nullptr : new RowViewAccessible(*view);
}

void announce(RowView& view, QAccessible::Event type, int row) {
  QAccessibleEvent event(&view, type);
  event.setChild(row);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

void installRowViewAccessibility() {
  [[maybe_unused]] static const bool isInstalled = [] {
    QAccessible::installFactory(makeRowsAccessible);
    return true;
  }();
}

void announceFocus(RowView& view, const QModelIndex& row) {
  if (QAccessible::isActive() && row.isValid()) announce(view, QAccessible::Focus, row.row());
}

void announceSelection(RowView& view, const QItemSelection& selected, const QItemSelection& deselected) {
  if (!QAccessible::isActive()) return;
  for (const QModelIndex& row : deselected.indexes()) announce(view, QAccessible::SelectionRemove, row.row());
  for (const QModelIndex& row : selected.indexes()) announce(view, QAccessible::Selection, row.row());
}

void announceRowNames(RowView& view) {
  if (!QAccessible::isActive()) return;
  auto* const list = dynamic_cast<RowViewAccessible*>(QAccessible::queryAccessibleInterface(&view));
  if (list == nullptr) return;
  list->forgetLostRows();
  for (const int row : view.visibleRows()) {
    if (!list->isKnown(row)) continue;
    announce(view, QAccessible::NameChanged, row);
    announce(view, QAccessible::DescriptionChanged, row);
  }
}

}  // namespace tarnix::qt
