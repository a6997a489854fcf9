#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "backends/qt/previews/preview_answer.h"
#include "backends/qt/previews/preview_part.h"

namespace tarnix::qt {

// The pages of a document in a column. A page is asked for when it comes into sight, one at a time, and is
// blank until it is there; of those out of sight only a few are kept.
class PagePreview : public QAbstractScrollArea, public PreviewPart {
 public:
  using Ask = std::function<void(std::size_t page, QSize pixels)>;

  PagePreview(Ask ask, QWidget* parent = nullptr);

  void setDocument(const previewing::Document& document);
  void setPage(PreviewPage page);

  // The first page in sight and the one behind the last.
  std::pair<std::size_t, std::size_t> visiblePages() const;
  bool isDrawn(std::size_t page) const { return drawn_.contains(page); }
  std::size_t keptPages() const { return drawn_.size(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void layOut();
  void askForNext();
  void forgetDistant();
  QRectF pageRect(std::size_t page) const;  // In the viewport.
  QSize pixelsOf(std::size_t page) const;

  Ask ask_;
  std::vector<std::pair<float, float>> sizes_;
  std::vector<double> tops_;  // Of the pages, from the top of the column.
  double scale_ = 1;
  std::map<std::size_t, QImage> drawn_;
  std::optional<std::size_t> asked_;
};

}  // namespace tarnix::qt
