#pragma once

#include <QFont>
#include <QRectF>
#include <QString>
#include <QStyleOptionViewItem>
#include <optional>
#include <vector>

#include "backends/qt/widgets/limited_text.h"
#include "platform/swiftui/element.h"

namespace tarnix::qt {

// What a row shows, from its elements, and where: its symbols and texts one after the other, the badge at the
// end. Texts share the room that the symbols leave. Mirrored where the desktop reads from the right.
class RowLayout {
 public:
  struct Part {
    QString symbol;  // Else a text.
    QString text;
    QFont font;
    std::size_t lineLimit = 0;
    std::optional<modifiers::ForegroundStyle> style;
    int side = 0;  // Of the symbol.
    QRectF room;

    bool isText() const { return symbol.isEmpty(); }
  };

  // The option tells the rectangle, the font and the direction.
  RowLayout(const QStyleOptionViewItem& option, const Element& row);

  const std::vector<Part>& parts() const { return parts_; }
  const QRectF& ground() const { return ground_; }
  // Empty without a badge.
  const QString& badge() const { return badge_; }
  const QRectF& pill() const { return pill_; }
  QFont pillFont() const;
  int height() const;

  LimitedText textOf(const Part& part) const;
  static int lineHeight(const QFont& font);

 private:
  void addParts(const Element& element);
  void addSymbol(const String& name, const Element& element);
  void addText(const String& text, const Element& element);
  void placePill();
  void placeParts();
  void mirror();

  const QStyleOptionViewItem& option_;
  std::vector<Part> parts_;
  QRectF ground_;
  QString badge_;
  QRectF pill_;
};

}  // namespace tarnix::qt
