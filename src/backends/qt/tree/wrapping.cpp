#include "backends/qt/tree/wrapping.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QMargins>
#include <QPainter>
#include <optional>
#include <type_traits>

#include "backends/qt/theme/colors.h"

namespace tarnix::qt {
namespace {

constexpr int kStandardPadding = 16;

// Holds the content in its only cell.
template <typename Modifier>
class WrappingOf : public Wrapping {
 public:
  WrappingOf() {
    cell_ = new QHBoxLayout(this);
    cell_->setContentsMargins({});
    cell_->setSpacing(0);
  }

  void setContent(QWidget* content) override {
    cell_->addWidget(content);
    content->show();
  }

  bool show(const modifiers::Modifier& modifier) override {
    const auto* own = std::get_if<Modifier>(&modifier);
    if (own != nullptr) showModifier(*own);
    return own != nullptr;
  }

 protected:
  virtual void showModifier(const Modifier& modifier) = 0;
  QHBoxLayout& cell() { return *cell_; }

 private:
  QHBoxLayout* cell_;
};

class PaddingWrapping : public WrappingOf<modifiers::Padding> {
  // Leading and trailing change sides where the desktop reads from the right.
  void showModifier(const modifiers::Padding& padding) override {
    padding_ = padding;
    place();
  }
  void changeEvent(QEvent* event) override {
    WrappingOf::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) place();
  }
  void place() {
    QMarginsF margins(padding_.leading, padding_.top, padding_.trailing, padding_.bottom);
    if (padding_.isStandard)
      margins = {kStandardPadding, kStandardPadding, kStandardPadding, kStandardPadding};
    if (isRightToLeft()) margins = {margins.right(), margins.top(), margins.left(), margins.bottom()};
    if (cell().contentsMargins() != margins.toMargins()) cell().setContentsMargins(margins.toMargins());
  }

  modifiers::Padding padding_;
};

class BackgroundWrapping : public WrappingOf<modifiers::Background> {
  void showModifier(const modifiers::Background& background) override {
    background_ = background;
    update();
  }
  void paintEvent(QPaintEvent*) override {
    if (background_) QPainter(this).fillRect(rect(), colorOf(background_->color.nsColor(), palette()));
  }

  std::optional<modifiers::Background> background_;
};

class FrameWrapping : public WrappingOf<modifiers::Frame> {
  void showModifier(const modifiers::Frame& frame) override {
    fix(frame.width, &QWidget::setMinimumWidth, &QWidget::setMaximumWidth);
    fix(frame.height, &QWidget::setMinimumHeight, &QWidget::setMaximumHeight);
    // What fills its room inside doesn't reach beyond it.
    setSizePolicy(policyFor(frame.width), policyFor(frame.height));
  }
  void setContent(QWidget* content) override {
    WrappingOf::setContent(content);
    cell().setAlignment(content, Qt::AlignCenter);
  }
  void fix(double length, void (QWidget::*setMinimum)(int), void (QWidget::*setMaximum)(int)) {
    (this->*setMinimum)(qRound(length));
    (this->*setMaximum)(length == 0 ? QWIDGETSIZE_MAX : qRound(length));
  }
  static QSizePolicy::Policy policyFor(double length) {
    return length == 0 ? QSizePolicy::Preferred : QSizePolicy::Fixed;
  }
};

// How each kind of modifier is shown. A kind without an entry doesn't compile.
template <typename Modifier>
struct Shown;
template <typename Widget>
struct AroundContent {
  static std::unique_ptr<Wrapping> make() { return std::make_unique<Widget>(); }
};
// By the presenters that read it, or by the place (`Slot`).
struct WithoutWidget {
  static std::unique_ptr<Wrapping> make() { return nullptr; }
};
// clang-format off
template <> struct Shown<modifiers::Padding> : AroundContent<PaddingWrapping> {};
template <> struct Shown<modifiers::Background> : AroundContent<BackgroundWrapping> {};
template <> struct Shown<modifiers::Frame> : AroundContent<FrameWrapping> {};
template <> struct Shown<modifiers::Font> : WithoutWidget {};
template <> struct Shown<modifiers::ForegroundStyle> : WithoutWidget {};
template <> struct Shown<modifiers::TextAlignment> : WithoutWidget {};
template <> struct Shown<modifiers::SymbolRenderingMode> : WithoutWidget {};
template <> struct Shown<modifiers::ListStyle> : WithoutWidget {};
template <> struct Shown<modifiers::ToggleStyle> : WithoutWidget {};
template <> struct Shown<modifiers::ButtonStyle> : WithoutWidget {};
template <> struct Shown<modifiers::LabelStyle> : WithoutWidget {};
template <> struct Shown<modifiers::Disabled> : WithoutWidget {};
template <> struct Shown<modifiers::LineLimit> : WithoutWidget {};
template <> struct Shown<modifiers::Help> : WithoutWidget {};
template <> struct Shown<modifiers::NavigationTitle> : WithoutWidget {};
template <> struct Shown<modifiers::Searchable> : WithoutWidget {};
template <> struct Shown<modifiers::Badge> : WithoutWidget {};
template <> struct Shown<modifiers::Tag> : WithoutWidget {};
template <> struct Shown<modifiers::AccessibilityLabel> : WithoutWidget {};
// clang-format on

std::unique_ptr<Wrapping> makeWrapping(const modifiers::Modifier& modifier) {
  return std::visit([](const auto& each) { return Shown<std::decay_t<decltype(each)>>::make(); }, modifier);
}

bool asksForWidget(const modifiers::Modifier& modifier) {
  return std::visit(
      [](const auto& each) { return !std::is_base_of_v<WithoutWidget, Shown<std::decay_t<decltype(each)>>>; },
      modifier);
}

}  // namespace

Wrappings::~Wrappings() { clear(); }

bool Wrappings::show(const Element& element, QWidget& content) {
  std::vector<const modifiers::Modifier*> wanted;
  for (const auto& modifier : element.modifiers) {
    if (asksForWidget(modifier)) wanted.push_back(&modifier);
  }
  if (update(wanted)) return false;
  clear();
  content_ = &content;
  QWidget* inner = &content;
  for (const auto* modifier : wanted) {
    wrappings_.push_back(makeWrapping(*modifier));
    wrappings_.back()->show(*modifier);
    wrappings_.back()->setContent(inner);
    inner = wrappings_.back().get();
  }
  return true;
}

bool Wrappings::update(const std::vector<const modifiers::Modifier*>& wanted) {
  if (wanted.size() != wrappings_.size()) return false;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (!wrappings_[i]->show(*wanted[i])) return false;
  }
  return true;
}

// A widget would take those inside with it.
void Wrappings::clear() {
  if (content_) content_->setParent(nullptr);
  for (const auto& each : wrappings_) each->setParent(nullptr);
  wrappings_.clear();
}

}  // namespace tarnix::qt
