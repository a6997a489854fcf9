#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRect>
#include <QTextLayout>
#include <cstddef>
#include <memory>

#include "backends/qt/text/plain/plain_text_pieces.h"
#include "platform/foundation/string.h"

class QPainter;
class QPalette;

namespace tarnix::qt {

// What the colours of a text are shown on and with.
struct TextColors {
  QColor text;        // Of text without a colour of its own.
  QColor background;  // Below all of it.
  QColor link;
  QColor line;              // Of what frames a table.
  bool isAdaptive = false;  // Colours that could not be read are changed.

  bool operator==(const TextColors&) const = default;
};

// How pieces are laid out. Sizes in device-independent pixels.
struct LayoutStyle {
  QFont font;
  int width = 0;
  QColor labelColor;    // Of what stands for control characters.
  TextColors colors{};  // Of a text with colours of its own.

  bool operator==(const LayoutStyle&) const = default;
};

// Height of a row of text that needs no other font than that of the style.
int rowHeight(const QFont& font);

// A piece of a text, decoded and broken into rows. Speaks of places as byte offsets into the whole text;
// points and rectangles are relative to its own top left corner.
class PieceLayout {
 public:
  explicit PieceLayout(const TextPiece& piece) : piece_(piece) {}
  PieceLayout(const PieceLayout&) = delete;
  PieceLayout& operator=(const PieceLayout&) = delete;
  virtual ~PieceLayout() = default;

  const TextPiece& piece() const { return piece_; }
  virtual int height() const = 0;
  virtual bool isRightToLeft() const = 0;
  virtual std::size_t rowCount() const = 0;
  // Where the row ends that follows `row` others.
  virtual int rowBottom(std::size_t row) const = 0;

  // The place between two characters that is nearest to the point.
  virtual std::size_t offsetAt(QPointF point) const = 0;
  // The character under the point, or the nearest one of the row.
  virtual std::size_t characterAt(QPointF point) const = 0;
  // An upright line as high as its row, before the character at `offset`.
  virtual QRect caretAt(std::size_t offset) const = 0;
  virtual TextRange rowAround(std::size_t offset) const = 0;
  virtual TextRange rowAtHeight(int y) const = 0;
  virtual TextRange wordAround(std::size_t offset) const = 0;

  // The next place for a caret; `offset` itself when there is none left in this piece.
  virtual std::size_t next(std::size_t offset, QTextLayout::CursorMode mode) const = 0;
  virtual std::size_t previous(std::size_t offset, QTextLayout::CursorMode mode) const = 0;

  // Draws the rows that meet `clip`, with `selection` marked in the highlight colours. All in the coordinates
  // of `painter`.
  virtual void draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
                    const QPalette& palette) const = 0;

 private:
  TextPiece piece_;
};

// A text as pieces that can be laid out one by one. The pieces follow each other without a gap, and the last
// one reaches one past the size of the text.
class PieceSource {
 public:
  virtual ~PieceSource() = default;
  virtual const String& text() const = 0;
  // The piece that holds the byte at `offset`, line break included; the last one for any larger offset.
  virtual TextPiece pieceAt(std::size_t offset) const = 0;
  virtual std::shared_ptr<const PieceLayout> layOut(const TextPiece& piece,
                                                    const LayoutStyle& style) const = 0;
};

}  // namespace tarnix::qt
