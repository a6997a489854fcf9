#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <vector>

#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/tree/presenter.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {
namespace {

constexpr int kWarningSide = 40;
constexpr int kTextWidth = 320;
constexpr QMargins kMargins(20, 20, 20, 16);

QMessageBox::ButtonRole messageRole(elements::ButtonRole role) {
  switch (role) {
    case elements::ButtonRole::cancel:
      return QMessageBox::RejectRole;
    case elements::ButtonRole::destructive:
      return QMessageBox::DestructiveRole;
    case elements::ButtonRole::none:
      break;
  }
  return QMessageBox::AcceptRole;
}

// The toolkit's dialog copies its texts by the toolkit's clipboard.
class MessageBox : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (!event->matches(QKeySequence::Copy)) QMessageBox::keyPressEvent(event);
  }
};

// A dialog that keeps its window from input while it is open, and nothing else.
class ConfirmationDialogPresenter : public Presenter {
 public:
  using Presenter::Presenter;
  QWidget* widget() const override { return nullptr; }

  void show(const Element& element) override {
    element_ = &element;
    const bool isWanted = dialog().isPresented.get();
    if (isWanted && !box_) open();
    if (!isWanted) box_.reset();
  }

 private:
  const elements::ConfirmationDialog& dialog() const { return *element_->as<elements::ConfirmationDialog>(); }

  void open() {
    box_ = std::make_unique<MessageBox>(rendering().window);
    box_->setWindowModality(Qt::WindowModal);
    box_->setTextFormat(Qt::PlainText);
    box_->setTextInteractionFlags(Qt::NoTextInteraction);
    box_->setText(localizedText(dialog().title));
    box_->setInformativeText(localizedText(dialog().message));
    const QColor warning = box_->palette().color(QPalette::BrightText);
    box_->setIconPixmap(symbolPixmap(QStringLiteral("exclamationmark.triangle"), kWarningSide,
                                     box_->devicePixelRatioF(), monochrome(warning)));
    buttons_.clear();
    for (const Element& child : element_->children) buttons_.push_back(addButton(child));
    setLabels();
    box_->layout()->setContentsMargins(kMargins);
    QObject::connect(box_.get(), &QMessageBox::finished, box_.get(), [this] { close(); });
    box_->open();
  }

  // The title stands out, and the message gets room for a whole phrase on a line.
  void setLabels() {
    if (auto* const title = box_->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
      QFont font = title->font();
      font.setWeight(QFont::DemiBold);
      title->setFont(font);
      title->setMinimumWidth(kTextWidth);
    }
  }

  QAbstractButton* addButton(const Element& child) {
    const auto* content = child.as<elements::Button>();
    if (content == nullptr) return nullptr;
    QPushButton* const button = box_->addButton(shownTitle(labelOf(child)), messageRole(content->role));
    if (content->role == elements::ButtonRole::destructive) colorDestructive(*button);
    if (content->role == elements::ButtonRole::cancel) {
      box_->setDefaultButton(button);
      box_->setEscapeButton(button);
    }
    return button;
  }

  static void colorDestructive(QPushButton& button) {
    QPalette palette;
    palette.setColor(QPalette::ButtonText, button.palette().color(QPalette::BrightText));
    button.setPalette(palette);
  }

  // Runs once for each dialog, however it went.
  void close() {
    // Closing the window counts as the escape button.
    auto* const button = box_->clickedButton() != nullptr ? box_->clickedButton() : box_->escapeButton();
    const auto found = std::ranges::find(buttons_, button);
    const auto position = static_cast<std::size_t>(found - buttons_.begin());
    // Its signal is being sent.
    box_.release()->deleteLater();
    const auto keepsAlive = rendering().tree;
    const Binding<bool> isPresented = dialog().isPresented;
    // The action may ask for the dialog again.
    isPresented.set(false);
    if (position < buttons_.size()) choose(position);
  }

  void choose(std::size_t position) const {
    if (position >= element_->children.size()) return;
    const auto* button = element_->children[position].as<elements::Button>();
    if (button != nullptr && button->action) button->action();
  }

  const Element* element_ = nullptr;
  std::unique_ptr<MessageBox> box_;
  std::vector<QAbstractButton*> buttons_;  // By the position of their elements; owned by the dialog.
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::ConfirmationDialog>(Rendering& rendering, const Element&) {
  return std::make_unique<ConfirmationDialogPresenter>(rendering);
}

}  // namespace tarnix::qt
