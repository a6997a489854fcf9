#include "contract/view_contract.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMessageBox>
#include <QtTest>

#include "backends/qt/rows/row_view.h"
#include "backends/qt/stage.h"
#include "backends/qt/text/plain/plain_text_view.h"
#include "backends/qt/theme/text.h"
#include "contract/changing_view.h"

namespace tarnix::qt {
namespace {

// The widgets, found as assistive tools find them and used by the mouse.
class QtStage final : public test::ViewStage {
 public:
  ~QtStage() override { graph_.reset(); }

  void show(std::function<View()> view) override {
    shown_.make = std::move(view);
    graph_.emplace(View(shown_), stage_.loop());
    graph_->setRender([this](const auto& tree) { stage_.render(tree); });
    Stage::settle();
  }
  void settle() override {
    shown_.change();
    while (stage_.loop().nextDue()) stage_.loop().runDue();
    Stage::settle();
  }

  bool shows(const std::string& text) override {
    for (const QAccessible::Role role :
         {QAccessible::StaticText, QAccessible::Button, QAccessible::CheckBox}) {
      if (stage_.has(role, toQString(text))) return true;
    }
    return false;
  }
  bool hasButton(const std::string& name) override {
    return stage_.has(QAccessible::Button, toQString(name));
  }
  bool hasToggle(const std::string& name) override {
    return stage_.has(QAccessible::CheckBox, toQString(name));
  }
  bool press(const std::string& name) override { return hasButton(name) && click(QAccessible::Button, name); }
  bool flip(const std::string& name) override {
    return hasToggle(name) && click(QAccessible::CheckBox, name);
  }
  bool isOn(const std::string& name) override {
    return hasToggle(name) && button(QAccessible::CheckBox, name)->isChecked();
  }
  std::vector<std::string> focusOrder() override {
    std::vector<std::string> names;
    if (QWidget* const former = stage_.window().focusWidget()) former->clearFocus();
    QTest::keyClick(&stage_.window(), Qt::Key_Tab);
    const QWidget* const first = QApplication::focusWidget();
    for (QWidget* each = QApplication::focusWidget(); each != nullptr;) {
      names.push_back(nameOf(QAccessible::queryAccessibleInterface(each)).toStdString());
      QTest::keyClick(each, Qt::Key_Tab);
      each = QApplication::focusWidget();
      if (each == first) break;
    }
    return names;
  }
  bool search(const std::string& text) override {
    auto* const field = stage_.window().findChild<QLineEdit*>();
    if (field != nullptr) QTest::keyClicks(field, toQString(text));
    return field != nullptr;
  }
  bool pick(std::size_t row) override {
    auto& view = list();
    const QModelIndex index = view.model()->index(static_cast<int>(row), 0);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
    return index.isValid();
  }
  std::vector<Row> rows() override {
    std::vector<Row> rows;
    const QAbstractItemModel& model = *list().model();
    for (int row = 0; row < model.rowCount(); ++row) {
      const QModelIndex index = model.index(row, 0);
      const auto told = [&](int role) { return index.data(role).toString().toStdString(); };
      rows.push_back({told(Qt::AccessibleTextRole), told(Qt::AccessibleDescriptionRole),
                      list().selectionModel()->isSelected(index)});
    }
    return rows;
  }
  std::optional<std::string> text() override {
    for (const QWidget* each : stage_.window().findChildren<QWidget*>()) {
      if (const auto* view = dynamic_cast<const PlainTextView*>(each)) return view->text().str();
    }
    return std::nullopt;
  }
  std::optional<std::string> dialog() override {
    const auto* box = this->box();
    return box == nullptr ? std::nullopt : std::optional(box->text().toStdString());
  }
  bool choose(const std::string& name) override {
    if (box() == nullptr) return false;
    for (QAbstractButton* const each : box()->buttons()) {
      if (each->text() != toQString(name)) continue;
      each->click();
      return true;
    }
    return false;
  }

  std::optional<std::vector<std::string>> popoverRows() override {
    QWidget* const popup = QApplication::activePopupWidget();
    auto* const rows = popup == nullptr ? nullptr : popup->findChild<RowView*>();
    if (rows == nullptr) return std::nullopt;
    std::vector<std::string> texts;
    for (int row = 0; row < rows->model()->rowCount(); ++row)
      texts.push_back(rows->model()->index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString());
    return texts;
  }
  void leavePopover() override { QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape); }

 private:
  RowView& list() { return *stage_.window().findChild<RowView*>(); }
  QMessageBox* box() { return stage_.window().findChild<QMessageBox*>(); }
  QAbstractButton* button(QAccessible::Role role, const std::string& name) {
    return static_cast<QAbstractButton*>(stage_.widget(role, toQString(name)));
  }
  bool click(QAccessible::Role role, const std::string& name) {
    QAbstractButton* const found = button(role, name);
    const bool isEnabled = found->isEnabled();
    found->click();
    return isEnabled;
  }

  Stage stage_;
  test::ChangingView shown_;
  std::optional<ViewGraph> graph_;
};

using test::ViewContract;
INSTANTIATE_TEST_SUITE_P(Qt, ViewContract, ::testing::Values([] { return std::make_unique<QtStage>(); }));

}  // namespace
}  // namespace tarnix::qt
