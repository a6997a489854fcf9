#pragma once

#include <QSplitter>
#include <utility>

class QBoxLayout;
class QLabel;

namespace tarnix::qt {

// Two columns with a hairline between them that can be dragged or moved by keys: the sidebar, and the detail
// column below a bar with the title and the toolbar's items.
class NavigationSplit : public QSplitter {
 public:
  explicit NavigationSplit(QWidget* parent = nullptr);

  // Null leaves the column empty. The widgets stay their owners'.
  void setSidebar(QWidget* content);
  void setDetail(QWidget* content);
  void setTitle(const QString& title);
  void setToolbar(const std::vector<QWidget*>& leading, const std::vector<QWidget*>& trailing);
  // The sidebar keeps its contents and its width while it is hidden.
  void toggleSidebar();

  // Limited to what leaves both columns usable.
  void setSidebarWidth(int width);
  int sidebarWidth() const;
  std::pair<int, int> sidebarLimits() const;

 protected:
  QSplitterHandle* createHandle() override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeDetailColumn();
  void walkFromSidebarToHandle();
  void alignTitle();

  QWidget* sidebar_;
  QBoxLayout* detail_ = nullptr;
  QBoxLayout* leadingItems_ = nullptr;
  QBoxLayout* trailingItems_ = nullptr;
  QLabel* title_ = nullptr;
};

}  // namespace tarnix::qt
