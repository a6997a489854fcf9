#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "backends/qt/text/plain/plain_text_view.h"
#include "platform/appkit/attributed_string.h"
#include "platform/appkit/color.h"

namespace tarnix::qt {

// A read-only view of a text of any size, plain or with a look of its own. Links are opened by a click, or by
// Enter once Tab has led to them.
class RichTextView : public PlainTextView {
 public:
  // How many links are told one by one.
  static constexpr std::size_t kMostLinks = 500;

  explicit RichTextView(QWidget* parent = nullptr);

  void setText(String text) override;
  // An equal text changes nothing.
  void setAttributedText(const NSAttributedString& text);
  // What is called with a link that the user opens. Links that can't be opened are text like any other.
  void setOpenLink(std::function<void(const String&)> open) { open_ = std::move(open); }
  // On what a text with its own look lies, where it isn't the palette's, and whether colours that can't be
  // read there are changed.
  void setGround(std::optional<NSColor> background, bool isAdaptive);

  // What the character at `offset` leads to, and all of the characters around it that lead there.
  struct Link {
    String target;
    TextRange range;
  };
  std::optional<Link> linkAt(std::size_t offset) const;
  // The first ones that can be opened, until the next text.
  const std::vector<Link>& links() const { return links_; }
  void open(const Link& link);
  // Selects a link and shows it.
  void goTo(const Link& link);
  // The attributes of the character there, and the characters around it that have the same.
  struct Run {
    TextAttributes attributes;
    TextRange range;
  };
  std::optional<Run> runAt(std::size_t offset) const;
  std::pair<QString, TextRange> lookAt(std::size_t offset) const override;

 protected:
  LayoutStyle layoutStyle() const override;
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  bool focusNextPrevChild(bool isNext) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QColor ground() const;
  std::size_t runIndexAt(std::size_t offset) const;
  TextRange rangeOfRuns(std::size_t first, std::size_t last) const;
  bool isLink(std::size_t run) const;
  Link linkOf(std::size_t run) const;
  std::optional<Link> linkUnder(QPoint point) const;
  std::optional<Link> nextLink(bool isNext) const;
  std::optional<Link> selectedLink() const;
  void tell(const std::optional<Link>& link);
  void findLinks();

  std::optional<NSAttributedString> attributed_;  // Absent for a plain text.
  std::vector<bool> isLink_;                      // For each of its attributes.
  std::vector<Link> links_;
  std::function<void(const String&)> open_;
  std::optional<NSColor> background_;
  bool isAdaptive_ = false;
  std::optional<Link> pressed_;
};

}  // namespace tarnix::qt
