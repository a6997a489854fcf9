#include "backends/qt/previews/folder_model.h"

#include <QGuiApplication>
#include <QPalette>
#include <iterator>
#include <utility>

#include "backends/qt/previews/preview_texts.h"
#include "backends/qt/theme/icons.h"
#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

using previewing::Entry;

constexpr int kIconSide = 16;
constexpr int kRowHeight = 28;

String themeNameOf(Entry::Kind kind) {
  switch (kind) {
    case Entry::Kind::folder:
      return "folder";
    case Entry::Kind::link:
      return "emblem-symbolic-link";
    default:
      return {};
  }
}

QString nameOfEntry(const Entry& entry) { return singleLine(titleStart(entry.name)); }

}  // namespace

void FolderModel::clear() {
  beginResetModel();
  entries_.clear();
  endResetModel();
}

void FolderModel::append(std::vector<Entry> entries) {
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(entries.size()) - 1);
  entries_.insert(entries_.end(), std::move_iterator(entries.begin()), std::move_iterator(entries.end()));
  endInsertRows();
}

int FolderModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns; }

QVariant FolderModel::data(const QModelIndex& index, int role) const {
  const Entry& entry = entries_[static_cast<std::size_t>(index.row())];
  const bool isName = index.column() == nameColumn;
  switch (role) {
    case Qt::DisplayRole:
      if (isName) return nameOfEntry(entry);
      return entry.kind == Entry::Kind::file ? texts::byteCount(entry.bytes) : QString();
    case Qt::DecorationRole:
      return isName ? iconOfEntry(entry) : QVariant();
    case Qt::SizeHintRole:
      return QSize(0, kRowHeight);
    case Qt::TextAlignmentRole:
      return isName ? QVariant() : QVariant(Qt::AlignTrailing | Qt::AlignVCenter);
    case Qt::ForegroundRole:
      if (isName && !entry.isHidden) return {};
      return QGuiApplication::palette().brush(QPalette::PlaceholderText);
    default:
      return {};
  }
}

QIcon FolderModel::iconOfEntry(const Entry& entry) const {
  const auto dot = entry.name.rfind('.');
  const std::string extension = dot == std::string::npos || dot == 0 ? std::string() : entry.name.substr(dot);
  const QString key =
      entry.kind == Entry::Kind::file ? toQString(extension) : toQString(themeNameOf(entry.kind));
  // Drawings are made for a colour, which may change.
  const QColor color = QGuiApplication::palette().color(QPalette::PlaceholderText);
  if (std::exchange(iconColor_, color) != color) icons_.clear();
  if (const auto known = icons_.constFind(key); known != icons_.constEnd()) return *known;
  const NSImage image{
      entry.kind == Entry::Kind::file ? std::vector<String>() : std::vector{themeNameOf(entry.kind)},
      String("file" + extension)};
  QIcon icon = iconOf(image);
  if (icon.isNull()) {
    const bool isFolder = entry.kind == Entry::Kind::folder;
    icon = symbolPixmap(isFolder ? QStringLiteral("folder") : QStringLiteral("doc"), kIconSide,
                        qGuiApp->devicePixelRatio(), monochrome(color));
  }
  return *icons_.insert(key, icon);
}

}  // namespace tarnix::qt
