#pragma once

#include <QLineEdit>

namespace tarnix::qt {

class SymbolButton;

// A rounded field with a magnifier in front and, while there is text, a button that clears it. The platform's
// key for finding gives it the focus, Escape clears it.
class SearchField : public QLineEdit {
 public:
  explicit SearchField(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  // Called for the key that leads from the field to what was found.
  void setLeave(std::function<void()> leave) { leave_ = std::move(leave); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  SymbolButton* clear_;
  std::function<void()> leave_;
};

}  // namespace tarnix::qt
