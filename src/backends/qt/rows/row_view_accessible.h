#pragma once

class QItemSelection;
class QModelIndex;

namespace tarnix::qt {

class RowView;

// Makes assistive tools see row views as lists of rows; once for the program.
void installRowViewAccessibility();

// Events for assistive tools; nothing where none listens.
void announceFocus(RowView& view, const QModelIndex& row);
void announceSelection(RowView& view, const QItemSelection& selected, const QItemSelection& deselected);
// The rows in sight may have other names than before.
void announceRowNames(RowView& view);

}  // namespace tarnix::qt
