#pragma once

#include <QTreeView>

#include "backends/qt/previews/folder_model.h"

namespace tarnix::qt {

// A folder's listing, which fills up from the top.
class FolderPreview : public QTreeView {
 public:
  explicit FolderPreview(QWidget* parent = nullptr);

  void setFolder(const previewing::Folder& folder);
  void append(std::vector<previewing::Entry> entries) { model_.append(std::move(entries)); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  FolderModel model_;
};

}  // namespace tarnix::qt
