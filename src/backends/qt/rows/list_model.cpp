#include "backends/qt/rows/list_model.h"

#include <QCoreApplication>
#include <algorithm>

#include "backends/qt/theme/text.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {
namespace {

// More than any window shows at once.
constexpr std::size_t kKeptRows = 512;

}  // namespace

void ListModel::show(const std::vector<Element>& sections) {
  std::vector<Block> blocks;
  int rows = 0;
  int lines = 0;
  for (const Element& element : sections) {
    const auto* section = element.as<elements::Section>();
    if (section == nullptr) continue;
    blocks.push_back({section, rows, lines});
    rows += blocks.back().rowCount();
    lines += blocks.back().headerLines() + blocks.back().rowCount();
  }
  blocks_ = std::move(blocks);
  made_.clear();
  resize(rows);
  if (rows > 0) emit dataChanged(index(0), index(rows - 1));
}

void ListModel::resize(int rowCount) {
  const int former = rowCount_;
  if (rowCount > former) {
    beginInsertRows({}, former, rowCount - 1);
    rowCount_ = rowCount;
    endInsertRows();
  } else if (rowCount < former) {
    beginRemoveRows({}, rowCount, former - 1);
    rowCount_ = rowCount;
    endRemoveRows();
  }
}

int ListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rowCount_; }

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount_) return {};
  const Element& row = element(index.row());
  if (role == Qt::AccessibleTextRole) {
    const QString title = titleStart(labelOf(row).title);
    const QString placeholder = placeholderFor(title);
    return placeholder.isEmpty() ? title : placeholder;
  }
  const auto* badge = role == Qt::AccessibleDescriptionRole ? row.modifier<modifiers::Badge>() : nullptr;
  return badge == nullptr ? QVariant() : QString::number(badge->count);
}

const Element& ListModel::element(int row) const {
  const auto found = made_.find(row);
  if (found != made_.end()) return found->second;
  if (made_.size() >= kKeptRows) made_.clear();
  return made_.emplace(row, make(row)).first->second;
}

Element ListModel::make(int row) const {
  const auto behind = [&](const Block& block) { return row < block.firstRow + block.rowCount(); };
  const auto block = std::ranges::find_if(blocks_, behind);
  if (block == blocks_.end()) return {};
  return block->section->row(static_cast<std::size_t>(row - block->firstRow));
}

std::optional<UUID> ListModel::tag(int row) const {
  const auto* tag = element(row).modifier<modifiers::Tag>();
  return tag == nullptr ? std::nullopt : std::optional(tag->tag);
}

std::optional<int> ListModel::rowOfTag(const UUID& tag) const {
  for (const Block& block : blocks_) {
    if (!block.section->positionOfTag) continue;
    const auto position = block.section->positionOfTag(tag);
    if (position && *position < block.section->rowCount) return block.firstRow + static_cast<int>(*position);
  }
  return std::nullopt;
}

int ListModel::lineCount() const {
  if (blocks_.empty()) return 0;
  return blocks_.back().firstLine + blocks_.back().headerLines() + blocks_.back().rowCount();
}

ListModel::Line ListModel::lineAt(int line) const {
  if (blocks_.empty()) return {};
  const auto startsBehind = [&](const Block& block) { return block.firstLine > line; };
  const auto next = std::ranges::find_if(blocks_, startsBehind);
  const Block& block = *std::prev(next);
  const int inside = line - block.firstLine - block.headerLines();
  if (inside < 0) return {std::nullopt, toQString(block.section->header)};
  return {block.firstRow + inside, {}};
}

int ListModel::lineOfRow(int row) const {
  int line = row;
  for (const Block& block : blocks_) {
    if (block.firstRow <= row) line = block.firstLine + block.headerLines() + row - block.firstRow;
  }
  return line;
}

QString ListModel::firstHeader() const {
  return blocks_.empty() ? QString() : toQString(blocks_.front().section->header);
}

}  // namespace tarnix::qt
