#include "backends/qt/rows/list_model.h"

#include <QCoreApplication>
#include <algorithm>

#include "backends/qt/theme/text.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {
namespace {

// More than any window shows at once.
constexpr std::size_t kKeptRows = 512;
constexpr std::size_t kMostRemade = 64;

template <typename Modifier>
std::string described(const Element& element) {
  const auto* modifier = element.modifier<Modifier>();
  return modifier == nullptr ? std::string() : describe(*modifier);
}

// What a row has from its list, or of its own, and is drawn by.
bool haveSameLook(const Element& a, const Element& b) {
  return described<modifiers::Font>(a) == described<modifiers::Font>(b) &&
         described<modifiers::ForegroundStyle>(a) == described<modifiers::ForegroundStyle>(b) &&
         described<modifiers::LineLimit>(a) == described<modifiers::LineLimit>(b) &&
         described<modifiers::Badge>(a) == described<modifiers::Badge>(b) &&
         described<modifiers::AccessibilityLabel>(a) == described<modifiers::AccessibilityLabel>(b);
}

bool haveSameTag(const Element& a, const Element& b) {
  const auto* first = a.modifier<modifiers::Tag>();
  const auto* second = b.modifier<modifiers::Tag>();
  return (first == nullptr) == (second == nullptr) && (first == nullptr || first->tag == second->tag);
}

// Texts may be long, and are mostly the same bytes.
bool looksAlike(const Element& a, const Element& b) {
  const LabelParts first = labelOf(a);
  const LabelParts second = labelOf(b);
  if (a.content.index() != b.content.index() || a.children.size() != b.children.size()) return false;
  if (first.title != second.title || first.systemName != second.systemName) return false;
  if (!haveSameLook(a, b) || !haveSameTag(a, b)) return false;
  return std::equal(a.children.begin(), a.children.end(), b.children.begin(), looksAlike);
}

}  // namespace

bool ListModel::show(const Elements& sections) {
  const auto formerParts = parts();
  std::vector<Block> blocks;
  int rows = 0;
  int lines = 0;
  for (const Element& element : sections) {
    const auto* section = element.as<elements::Section>();
    if (section == nullptr) continue;
    blocks.push_back(
        {section, rows, lines, localizedText(section->header), static_cast<int>(section->rowCount)});
    rows += blocks.back().rows;
    lines += blocks.back().headerLines() + blocks.back().rows;
  }
  blocks_ = std::move(blocks);
  const bool isSame = rows == rowCount_ && parts() == formerParts && made_.size() <= kMostRemade && remake();
  if (isSame) return false;
  made_.clear();
  resize(rows);
  if (rows > 0) emit dataChanged(index(0), index(rows - 1));
  return true;
}

// Makes the rows in use again. False when one looks otherwise.
bool ListModel::remake() {
  for (auto& [row, element] : made_) {
    Element now = make(row);
    if (!looksAlike(now, element)) return false;
    element = std::move(now);
  }
  return true;
}

std::vector<std::pair<QString, int>> ListModel::parts() const {
  std::vector<std::pair<QString, int>> parts;
  for (const Block& block : blocks_) parts.emplace_back(block.header, block.rows);
  return parts;
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
  const auto behind = [&](const Block& block) { return row < block.firstRow + block.rows; };
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
  return blocks_.back().firstLine + blocks_.back().headerLines() + blocks_.back().rows;
}

ListModel::Line ListModel::lineAt(int line) const {
  if (blocks_.empty()) return {};
  const auto startsBehind = [&](const Block& block) { return block.firstLine > line; };
  const auto next = std::ranges::find_if(blocks_, startsBehind);
  const Block& block = *std::prev(next);
  const int inside = line - block.firstLine - block.headerLines();
  if (inside < 0) return {std::nullopt, block.header};
  return {block.firstRow + inside, {}};
}

int ListModel::lineOfRow(int row) const {
  int line = row;
  for (const Block& block : blocks_) {
    if (block.firstRow <= row) line = block.firstLine + block.headerLines() + row - block.firstRow;
  }
  return line;
}

QString ListModel::firstHeader() const { return blocks_.empty() ? QString() : blocks_.front().header; }

}  // namespace tarnix::qt
