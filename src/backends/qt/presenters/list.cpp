#include <QCoreApplication>
#include <QVBoxLayout>

#include "backends/qt/rows/list_model.h"
#include "backends/qt/rows/row_view.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/tree/presenter.h"
#include "backends/qt/widgets/search_field.h"

namespace tarnix::qt {
namespace {

constexpr QMargins kSearchMargins(12, 12, 12, 8);

// The rows, and above them the field that searches them where there is one.
class ListPresenter : public WidgetPresenter<QWidget> {
 public:
  ListPresenter(Rendering& rendering, bool isSearchable) : WidgetPresenter(rendering) {
    auto* const layout = new QVBoxLayout(widget());
    layout->setContentsMargins({});
    layout->setSpacing(0);
    // In the order in which the keyboard walks through them.
    if (isSearchable) addSearch(*layout);
    addRows(*layout);
  }
  // The view lets go of the model before the model goes.
  ~ListPresenter() override { rows_.reset(); }

  bool canShow(const Element& element) const override {
    return (element.modifier<modifiers::Searchable>() != nullptr) == (search_ != nullptr);
  }

  void show(const Element& element) override {
    element_ = &element;
    if (search_) showSearch(*element.modifier<modifiers::Searchable>());
    isShowing_ = true;
    const auto* style = element.modifier<modifiers::ListStyle>();
    rows_->setStyle(style == nullptr ? modifiers::ListStyle::automatic : *style);
    const bool isChanged = model_.show(element.children);
    const bool isFruitless = search_ && !search_->text().isEmpty() && model_.rowCount() == 0;
    rows_->setNotice(isFruitless ? localized("No results") : QString());
    if (isChanged) rows_->refresh();
    showSelection();
    isShowing_ = false;
  }

 private:
  const elements::List& list() const { return *element_->as<elements::List>(); }

  void showSelection() {
    const std::optional<UUID> tag = list().selection.get();
    rows_->selectRow(tag ? model_.rowOfTag(*tag) : std::nullopt, tag != shownTag_);
    shownTag_ = tag;
  }

  // By the user: what is shown is not picked again.
  void pick() {
    const QModelIndex current = rows_->currentIndex();
    if (isShowing_ || !rows_->selectionModel()->isSelected(current)) return;
    const std::optional<UUID> tag = model_.tag(current.row());
    shownTag_ = tag;
    if (tag) call(list().selection.set, tag);
  }

  void showSearch(const modifiers::Searchable& searchable) {
    searched_ = searchable.text;
    const QString text = toQString(searched_.get());
    if (search_->text() != text) search_->setText(text);
  }

  void addRows(QVBoxLayout& layout) {
    rows_ = std::make_unique<RowView>(model_);
    layout.addWidget(rows_.get());
    QObject::connect(rows_->selectionModel(), &QItemSelectionModel::selectionChanged, rows_.get(),
                     [this] { pick(); });
  }

  void addSearch(QVBoxLayout& layout) {
    search_ = std::make_unique<SearchField>();
    auto* const place = new QHBoxLayout;
    place->setContentsMargins(kSearchMargins);
    place->addWidget(search_.get());
    layout.addLayout(place);
    search_->setLeave([this] { rows_->setFocus(Qt::TabFocusReason); });
    QObject::connect(search_.get(), &QLineEdit::textChanged, search_.get(), [this](const QString& text) {
      const String searched = fromQString(text);
      if (call(searched_.get) != searched) call(searched_.set, searched);
    });
  }

  ListModel model_;
  std::unique_ptr<RowView> rows_;
  std::unique_ptr<SearchField> search_;
  Binding<String> searched_;
  const Element* element_ = nullptr;
  std::optional<UUID> shownTag_;
  bool isShowing_ = false;
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::List>(Rendering& rendering, const Element& element) {
  const bool isSearchable = element.modifier<modifiers::Searchable>() != nullptr;
  return std::make_unique<ListPresenter>(rendering, isSearchable);
}

// Drawn by their list.
template <>
std::unique_ptr<Presenter> presenterFor<elements::Section>(Rendering&, const Element&) {
  return nullptr;
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::NavigationLink>(Rendering&, const Element&) {
  return nullptr;
}

}  // namespace tarnix::qt
