#include "backends/qt/previews/preview_widget.h"

#include <QAbstractScrollArea>
#include <QVBoxLayout>
#include <chrono>
#include <type_traits>
#include <utility>

#include "backends/qt/previews/folder_preview.h"
#include "backends/qt/previews/information_preview.h"
#include "backends/qt/previews/page_preview.h"
#include "backends/qt/previews/picture_preview.h"
#include "backends/qt/previews/text_preview.h"

namespace tarnix::qt {
namespace {

using namespace std::chrono_literals;

// What is there sooner needs no word that it is coming.
constexpr auto kUnnoticed = 150ms;
// What a picture is asked for in, whatever the window's size, so that it may grow.
constexpr int kSpaceBelow = 12;
constexpr QSize kLargestPane(1600, 1200);

}  // namespace

PreviewWidget::PreviewWidget(QWidget* parent)
    : QWidget(parent),
      parts_(new QStackedLayout),
      edge_(new Hairline(this)),
      client_([this](PreviewAnswer answer) { take(std::move(answer)); }) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  auto* const column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetNoConstraint);
  column->setContentsMargins(0, 0, 0, kSpaceBelow);
  column->setSpacing(0);
  column->addLayout(parts_, 1);
  column->addWidget(edge_);
  edge_->hide();
  slowness_.setSingleShot(true);
  slowness_.setInterval(kUnnoticed);
  connect(&slowness_, &QTimer::timeout, this, [this] { wait(); });
}

PreviewWidget::~PreviewWidget() = default;

void PreviewWidget::setSource(PreviewSource source, const QString& name) {
  name_ = name;
  slowness_.start();
  client_.ask(std::move(source), {kLargestPane * devicePixelRatioF(), devicePixelRatioF()});
}

void PreviewWidget::clear() {
  slowness_.stop();
  client_.drop();
  showOnly(nullptr);
}

void PreviewWidget::wait() { showPart<PlaceholderPreview>().setLoading(); }

template <typename Part>
Part& PreviewWidget::showPart() {
  auto* const part = new Part(this);
  showOnly(part);
  return *part;
}

void PreviewWidget::showOnly(QWidget* part) {
  folder_ = nullptr;
  pages_ = nullptr;
  const bool hadFocus = isAncestorOf(focusWidget()) && focusWidget()->hasFocus();
  if (part != nullptr) parts_->setCurrentIndex(parts_->addWidget(part));
  while (parts_->count() > (part == nullptr ? 0 : 1)) {
    QWidget* const former = parts_->widget(0);
    parts_->removeWidget(former);
    former->hide();
    former->deleteLater();
  }
  const QWidget* const scrolling = part == nullptr ? nullptr : part->focusProxy() ? part->focusProxy() : part;
  edge_->setVisible(qobject_cast<const QAbstractScrollArea*>(scrolling) != nullptr);
  if (part != nullptr && hadFocus) part->setFocus();
}

void PreviewWidget::take(PreviewAnswer answer) {
  slowness_.stop();
  const auto shown = [this](auto&& each) {
    using Answer = std::decay_t<decltype(each)>;
    if constexpr (std::is_same_v<Answer, PreviewFailure>)
      showPart<PlaceholderPreview>().setReason(each.reason);
    if constexpr (std::is_same_v<Answer, PreviewPicture>)
      showPart<PicturePreview>().setPicture(std::move(each));
    if constexpr (std::is_same_v<Answer, PreviewText>) showPart<TextPreview>().setText(each);
    if constexpr (std::is_same_v<Answer, previewing::Information>)
      showPart<InformationPreview>().setInformation(name_, each);
    if constexpr (std::is_same_v<Answer, previewing::Document>) {
      auto* const pages =
          new PagePreview([this](std::size_t page, QSize pixels) { client_.askPage(page, pixels); }, this);
      showOnly(pages);
      pages_ = pages;
      pages->setDocument(each);
    }
    if constexpr (std::is_same_v<Answer, previewing::Folder>) {
      auto& folder = showPart<FolderPreview>();
      folder_ = &folder;
      folder.setFolder(each);
    }
    if constexpr (std::is_same_v<Answer, std::vector<previewing::Entry>>) folder_->append(std::move(each));
    if constexpr (std::is_same_v<Answer, PreviewPage>) pages_->setPage(std::move(each));
  };
  std::visit(shown, std::move(answer));
}

}  // namespace tarnix::qt
