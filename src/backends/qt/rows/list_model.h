#pragma once

#include <QAbstractListModel>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/swiftui/element.h"

namespace tarnix::qt {

// The rows of a list's sections, one after the other. A row is made when it is first asked for, so that a
// list of any length costs what is seen of it. Rows are known by their position: a row that comes in front
// changes what the others show and adds a row at the end.
class ListModel : public QAbstractListModel {
 public:
  // A line of the list: a header, or a row.
  struct Line {
    std::optional<int> row;
    QString header;
  };

  // The elements stay valid until the next call. False when all that anybody has asked for looks as before.
  bool show(const Elements& sections);

  int rowCount(const QModelIndex& parent = {}) const override;
  // Accessible text: the title, as long as `titleStart` makes it; accessible description: the badge. A
  // placeholder stands for a title that nobody could see.
  QVariant data(const QModelIndex& index, int role) const override;

  // Stays valid until another row is asked for.
  const Element& element(int row) const;
  std::optional<UUID> tag(int row) const;
  std::optional<int> rowOfTag(const UUID& tag) const;

  int lineCount() const;
  Line lineAt(int line) const;
  int lineOfRow(int row) const;
  QString firstHeader() const;

 private:
  struct Block {
    const elements::Section* section;
    int firstRow;
    int firstLine;
    // Of the section, which is gone with its tree.
    QString header;
    int rows;
    int headerLines() const { return header.isEmpty() ? 0 : 1; }
  };

  void resize(int rowCount);
  bool remake();
  std::vector<std::pair<QString, int>> parts() const;  // The sections, by their headers and rows.
  Element make(int row) const;

  std::vector<Block> blocks_;
  int rowCount_ = 0;
  mutable std::unordered_map<int, Element> made_;
};

}  // namespace tarnix::qt
