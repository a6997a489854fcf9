#pragma once

#include <QFont>
#include <QPointF>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

class QPainter;

namespace tarnix::qt {

// A text of one paragraph, broken into at most so many lines; the last one takes the rest and is cut where it
// does not fit. Flush with the edge where the desktop begins to read.
class LimitedText {
 public:
  struct Form {
    QFont font;
    double width = 0;
    std::size_t lineLimit = 1;
    Qt::LayoutDirection direction = Qt::LeftToRight;  // Of the desktop; that of the text is its own matter.
  };

  LimitedText(const QString& text, const Form& form);

  int lineCount() const { return static_cast<int>(lines_.size()); }
  // In the painter's pen; each line is `lineHeight` high.
  void draw(QPainter& painter, const QPointF& corner, int lineHeight) const;

 private:
  void addLine(const QString& text);

  Form form_;
  std::vector<std::unique_ptr<QTextLayout>> lines_;
};

}  // namespace tarnix::qt
