#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QHash>
#include <QIcon>
#include <vector>

#include "previewer/protocol/messages.h"

namespace tarnix::qt {

// What is in a folder: names and sizes. Icons are looked up by name when they are drawn.
class FolderModel : public QAbstractTableModel {
 public:
  enum Column { nameColumn, sizeColumn, columns };

  void clear();
  void append(std::vector<previewing::Entry> entries);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QIcon iconOfEntry(const previewing::Entry& entry) const;

  std::vector<previewing::Entry> entries_;
  mutable QColor iconColor_;
  mutable QHash<QString, QIcon> icons_;  // By the extension, else by what it is.
};

}  // namespace tarnix::qt
