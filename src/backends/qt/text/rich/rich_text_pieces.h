#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "backends/qt/text/plain/piece_layout.h"
#include "backends/qt/text/rich/rich_text_document.h"
#include "platform/appkit/attributed_string.h"

namespace tarnix::qt {

// An attributed string as pieces: a paragraph, a part of a long one, or some rows of a table. Knowing where
// they begin takes one walk over the paragraphs; nothing else is done before a piece is looked at.
class RichPieces final : public PieceSource {
 public:
  explicit RichPieces(NSAttributedString text);

  const NSAttributedString& attributedText() const { return text_; }
  const String& text() const override { return text_.string(); }
  TextPiece pieceAt(std::size_t offset) const override;
  std::shared_ptr<const PieceLayout> layOut(const TextPiece& piece, const LayoutStyle& style) const override;

 private:
  static constexpr std::uint32_t kNoTable = ~std::uint32_t{0};
  struct Piece {
    std::uint32_t begin = 0;
    std::uint32_t paragraph = 0;  // The first one; how many there are for the empty piece at the end.
    std::uint32_t table = kNoTable;
  };
  struct Table {
    int columns = 1;
    std::vector<double> weights;  // Empty where all rows are in one piece.
  };

  const TableCell* cellOf(std::size_t paragraph) const { return text_.cellOf(text_.paragraphs()[paragraph]); }
  std::size_t beginOf(std::size_t paragraph) const {
    return paragraph == 0 ? 0 : text_.paragraphs()[paragraph - 1].end;
  }
  void addParagraph(std::size_t paragraph);
  // Gives the paragraph behind the table.
  std::size_t addTable(std::size_t paragraph);
  std::size_t endOfTable(std::size_t paragraph) const;
  void addBands(std::size_t first, std::size_t last);
  void weighColumns(std::size_t first, std::size_t last, Table& table) const;
  std::size_t indexOf(std::size_t offset) const;
  std::unique_ptr<RichDocument> documentOf(std::size_t index, const TextPiece& piece,
                                           const LayoutStyle& style) const;

  NSAttributedString text_;
  std::vector<Piece> pieces_;  // In the order of the text, at least one.
  std::vector<Table> tables_;
};

}  // namespace tarnix::qt
