#pragma once

#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "backends/qt/text/plain/piece_layout.h"
#include "platform/appkit/attributed_string.h"

namespace tarnix::qt {

inline constexpr std::uint32_t kMostColumns = 64;

// Some rows of a table; those that are tables within it too. The columns share the width by `weights`, or as
// their contents want when there are none.
struct TablePart {
  std::size_t firstParagraph = 0;
  std::size_t lastParagraph = 0;  // One behind.
  std::size_t begin = 0;          // In bytes.
  int columns = 1;
  std::span<const double> weights;
};

// A paragraph or a table of an attributed string as a document of the toolkit, and which place in the one is
// which in the other.
class RichDocument {
 public:
  // Neither is kept longer than for the calls below.
  RichDocument(const NSAttributedString& text, const LayoutStyle& style);
  RichDocument(const RichDocument&) = delete;
  RichDocument& operator=(const RichDocument&) = delete;
  ~RichDocument();

  // One of these, once. The part of the paragraph may be empty.
  void fill(std::size_t paragraph, TextRange part);
  void fill(const TablePart& part, std::size_t end);

  QTextDocument& document() const { return *document_; }
  int positionOf(std::size_t offset) const;
  std::size_t offsetOf(int position) const;

  // For those who write a table.
  const NSAttributedString& text() const { return text_; }
  const LayoutStyle& style() const { return *style_; }
  bool endsWithSeparator(std::size_t paragraph) const;
  // Into the empty block of the cursor.
  void writeParagraph(QTextCursor& cursor, std::size_t paragraph, TextRange part, int width);

 private:
  // Where a UTF-16 unit stands, and where the bytes that it comes from begin.
  struct Place {
    int position;
    std::uint32_t offset;
  };

  void writeRun(QTextCursor& cursor, TextRange part, const TextAttributes& attributes);
  void note(int position, std::size_t offset) {
    places_.push_back({position, static_cast<std::uint32_t>(offset)});
  }
  void layOut(QTextOption::WrapMode wrapMode);
  void finish(std::size_t end, QTextOption::WrapMode wrapMode);

  NSAttributedString text_;
  const LayoutStyle* style_;
  std::unique_ptr<QTextDocument> document_;
  std::vector<Place> places_;  // In the order of both.
};

}  // namespace tarnix::qt
