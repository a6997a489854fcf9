#pragma once

#include <cstddef>

#include "backends/qt/text/plain/plain_text_flow.h"

namespace tarnix::qt {

// Where a key takes the moving end of a selection. Left and right are those of the screen.
enum class Motion {
  left,
  right,
  wordLeft,
  wordRight,
  rowStart,
  rowEnd,
  rowUp,
  rowDown,
  pageUp,
  pageDown,
  start,
  end
};

// The place that `motion` leads to from `offset`. Up and down keep to `x`; a page has `pageHeight` pixels.
std::size_t moved(const TextFlow& flow, std::size_t offset, Motion motion, int x, int pageHeight);

inline bool isVertical(Motion motion) { return motion >= Motion::rowUp && motion <= Motion::pageDown; }

// What a drag marks: one end stays, the other follows the pointer by characters, words or lines.
class TextSelection {
 public:
  TextSelection() = default;
  // `origin` is the character place, word or line where it began; it stays marked.
  explicit TextSelection(TextRange origin) : origin_(origin), anchor_(origin.begin), cursor_(origin.end) {}

  void extendTo(TextRange reached);
  void moveCursor(std::size_t offset) { cursor_ = offset; }

  std::size_t anchor() const { return anchor_; }
  std::size_t cursor() const { return cursor_; }
  TextRange range() const;

 private:
  TextRange origin_;
  std::size_t anchor_ = 0;
  std::size_t cursor_ = 0;
};

}  // namespace tarnix::qt
