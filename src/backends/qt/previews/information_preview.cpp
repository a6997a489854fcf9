#include "backends/qt/previews/information_preview.h"

#include <QVBoxLayout>

#include "backends/qt/previews/preview_texts.h"
#include "backends/qt/theme/icons.h"

namespace tarnix::qt {
namespace {

constexpr int kLargeIconSide = 96;
constexpr int kLargeSymbolSide = 64;
constexpr int kWarningSide = 48;
// A name that is longer is told around its middle.
constexpr int kMostNameCharacters = 60;

QLabel* centredLabel(QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignHCenter);
  label->setWordWrap(true);
  return label;
}

QVBoxLayout* centredColumn(QWidget* widget) {
  auto* const column = new QVBoxLayout(widget);
  column->setSpacing(8);
  column->addStretch(1);
  return column;
}

QString shortened(const QString& name) {
  if (name.size() <= kMostNameCharacters) return name;
  return name.left(kMostNameCharacters / 2) + QStringLiteral("…") + name.right(kMostNameCharacters / 2);
}

}  // namespace

InformationPreview::InformationPreview(QWidget* parent)
    : QWidget(parent),
      PreviewPart(QAccessible::Grouping),
      icon_(new PictureWidget(this)),
      symbol_(new SymbolWidget(this)),
      name_(centredLabel(this)),
      facts_(centredLabel(this)) {
  icon_->setFixedSize(kLargeIconSide, kLargeIconSide);
  symbol_->setSymbol(QStringLiteral("doc"));
  symbol_->setSide(kLargeSymbolSide);
  symbol_->setTone(QPalette::PlaceholderText);
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  facts_->setForegroundRole(QPalette::PlaceholderText);
  QVBoxLayout* const column = centredColumn(this);
  column->addWidget(icon_, 0, Qt::AlignHCenter);
  column->addWidget(symbol_, 0, Qt::AlignHCenter);
  column->addWidget(name_);
  column->addWidget(facts_);
  column->addStretch(1);
}

void InformationPreview::setInformation(const QString& name, const previewing::Information& information) {
  icon_->setIcon(iconOf({{String(information.iconName), String(information.genericIconName)}, {}}));
  icon_->setVisible(!icon_->isEmpty());
  symbol_->setVisible(icon_->isEmpty());
  name_->setText(shortened(name));
  name_->setVisible(!name.isEmpty());
  QStringList facts{texts::informationName(information)};
  if (information.modified) facts << texts::modified(*information.modified);
  if (information.created) facts << texts::created(*information.created);
  facts_->setText(facts.join(u'\n'));
  setAccessibleName(facts.front());
}

PlaceholderPreview::PlaceholderPreview(QWidget* parent)
    : QWidget(parent),
      PreviewPart(QAccessible::StaticText),
      symbol_(new SymbolWidget(this)),
      reason_(centredLabel(this)) {
  symbol_->setSymbol(QStringLiteral("exclamationmark.triangle"));
  symbol_->setSide(kWarningSide);
  symbol_->setRenderingMode(modifiers::SymbolRenderingMode::hierarchical);
  reason_->setForegroundRole(QPalette::PlaceholderText);
  QVBoxLayout* const column = centredColumn(this);
  column->addWidget(symbol_, 0, Qt::AlignHCenter);
  column->addWidget(reason_);
  column->addStretch(1);
}

void PlaceholderPreview::setReason(const QString& reason) {
  symbol_->setVisible(true);
  reason_->setText(reason);
  setAccessibleName(texts::noPreview(reason));
}

void PlaceholderPreview::setLoading() {
  symbol_->setVisible(false);
  reason_->setText(texts::loading());
  setAccessibleName(texts::loading());
}

}  // namespace tarnix::qt
