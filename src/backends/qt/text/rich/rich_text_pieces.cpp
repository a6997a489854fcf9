#include "backends/qt/text/rich/rich_text_pieces.h"

#include <algorithm>
#include <utility>

#include "backends/qt/text/plain/plain_text_decoding.h"
#include "backends/qt/text/rich/rich_text_formats.h"
#include "backends/qt/text/rich/rich_text_layout.h"

namespace tarnix::qt {
namespace {

// A longer paragraph is cut, since laying one out takes time that grows with its length and its runs.
constexpr std::size_t kLongestPiece = 8 * 1024;
constexpr std::ptrdiff_t kMostRuns = 512;
constexpr std::size_t kCutReach = 256;
// What a band of a table holds at most.
constexpr std::size_t kMostCells = 96;
constexpr std::size_t kMostCellBytes = 16 * 1024;
// How much of a table says how wide its columns are.
constexpr std::size_t kWeighedParagraphs = 1000;
constexpr std::size_t kLeastWeight = 6;
constexpr std::size_t kMostWeight = 60;

// Behind a blank near `place`, else between two characters.
std::size_t cutOfParagraph(std::string_view text, std::size_t place) {
  for (std::size_t cut = place; cut + kCutReach > place; --cut) {
    if (text[cut - 1] == ' ') return cut;
  }
  return codePointStart(text, place);
}

}  // namespace

RichPieces::RichPieces(NSAttributedString text) : text_(std::move(text)) {
  const std::size_t count = text_.paragraphs().size();
  for (std::size_t each = 0; each < count;) {
    if (cellOf(each) != nullptr) {
      each = addTable(each);
    } else {
      addParagraph(each++);
    }
  }
  const std::string_view bytes = text_.string();
  if (bytes.empty() || bytes.back() == '\n')
    pieces_.push_back({static_cast<std::uint32_t>(bytes.size()), static_cast<std::uint32_t>(count)});
}

void RichPieces::addParagraph(std::size_t paragraph) {
  const std::size_t end = text_.paragraphs()[paragraph].end;
  const auto runs = text_.runs();
  std::size_t begin = beginOf(paragraph);
  while (begin < end) {
    pieces_.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(paragraph)});
    std::size_t next = end;
    if (next - begin > kLongestPiece) next = cutOfParagraph(text_.string(), begin + kLongestPiece / 2);
    const auto run = std::ranges::upper_bound(runs, begin, {}, &NSAttributedString::Run::end);
    if (runs.end() - run > kMostRuns) next = std::min<std::size_t>(next, run[kMostRuns - 1].end);
    begin = next;
  }
}

// Tables within the table belong to it, and a table that follows at once has another number.
std::size_t RichPieces::endOfTable(std::size_t paragraph) const {
  std::optional<std::uint32_t> table;
  std::size_t end = paragraph;
  for (; end < text_.paragraphs().size() && cellOf(end) != nullptr; ++end) {
    const TableCell& cell = *cellOf(end);
    if (cell.depth > 1) continue;
    if (table.value_or(cell.table) != cell.table) break;
    table = cell.table;
  }
  return end;
}

std::size_t RichPieces::addTable(std::size_t paragraph) {
  const std::size_t end = endOfTable(paragraph);
  std::uint32_t columns = 1;
  bool isTable = true;
  for (std::size_t each = paragraph; each < end; ++each) {
    const TableCell& cell = *cellOf(each);
    if (cell.depth == 1)
      columns = std::max(columns, cell.column + std::max<std::uint32_t>(cell.columnSpan, 1));
    isTable &= text_.paragraphs()[each].end - beginOf(each) <= kMostCellBytes;
  }
  if (!isTable || columns > kMostColumns) {
    for (std::size_t each = paragraph; each < end; ++each) addParagraph(each);
    return end;
  }
  tables_.push_back({static_cast<int>(columns), {}});
  const std::size_t firstPiece = pieces_.size();
  addBands(paragraph, end);
  if (pieces_.size() > firstPiece + 1) weighColumns(paragraph, end, tables_.back());
  return end;
}

void RichPieces::addBands(std::size_t first, std::size_t last) {
  const auto table = static_cast<std::uint32_t>(tables_.size() - 1);
  std::optional<std::uint32_t> row;
  std::size_t bandBegin = first;
  for (std::size_t each = first; each < last; ++each) {
    const TableCell& cell = *cellOf(each);
    const bool isNewRow = cell.depth == 1 && row != cell.row;
    const bool isFull =
        each - bandBegin >= kMostCells || beginOf(each) - beginOf(bandBegin) >= kMostCellBytes;
    if (cell.depth == 1) row = cell.row;
    if (each != first && !(isNewRow && isFull)) continue;
    bandBegin = each;
    pieces_.push_back({static_cast<std::uint32_t>(beginOf(each)), static_cast<std::uint32_t>(each), table});
  }
}

void RichPieces::weighColumns(std::size_t first, std::size_t last, Table& table) const {
  std::vector<std::size_t> longest(static_cast<std::size_t>(table.columns), kLeastWeight);
  for (std::size_t each = first; each < std::min(last, first + kWeighedParagraphs); ++each) {
    const TableCell& cell = *cellOf(each);
    if (cell.depth > 1 || cell.columnSpan > 1) continue;
    const std::size_t length = text_.paragraphs()[each].end - beginOf(each);
    longest[cell.column] = std::clamp(length, longest[cell.column], kMostWeight);
  }
  double sum = 0;
  for (const std::size_t each : longest) sum += static_cast<double>(each);
  for (const std::size_t each : longest) table.weights.push_back(static_cast<double>(each) / sum);
}

std::size_t RichPieces::indexOf(std::size_t offset) const {
  const auto behind = std::ranges::upper_bound(pieces_, offset, {}, &Piece::begin);
  return static_cast<std::size_t>(behind - pieces_.begin()) - 1;
}

TextPiece RichPieces::pieceAt(std::size_t offset) const {
  const std::string_view bytes = text_.string();
  const std::size_t index = indexOf(offset);
  const std::size_t begin = pieces_[index].begin;
  if (index + 1 == pieces_.size()) return {begin, bytes.size(), bytes.size() + 1};
  const std::size_t next = pieces_[index + 1].begin;
  return {begin, bytes[next - 1] == '\n' ? next - 1 : next, next};
}

std::unique_ptr<RichDocument> RichPieces::documentOf(std::size_t index, const TextPiece& piece,
                                                     const LayoutStyle& style) const {
  auto document = std::make_unique<RichDocument>(text_, style);
  const Piece& known = pieces_[index];
  if (known.table == kNoTable) {
    document->fill(known.paragraph, {piece.begin, piece.end});
    return document;
  }
  const Table& table = tables_[known.table];
  const auto last = std::ranges::lower_bound(text_.paragraphs(), std::min(piece.next, text().size()), {},
                                             &NSAttributedString::Paragraph::end);
  const auto lastParagraph = static_cast<std::size_t>(last - text_.paragraphs().begin()) + 1;
  document->fill(TablePart{known.paragraph, lastParagraph, piece.begin, table.columns, table.weights},
                 piece.end);
  return document;
}

std::shared_ptr<const PieceLayout> RichPieces::layOut(const TextPiece& piece,
                                                      const LayoutStyle& style) const {
  const std::size_t index = indexOf(piece.begin);
  const std::size_t paragraph = pieces_[index].paragraph;
  double above = 0;
  double below = 0;
  if (paragraph < text_.paragraphs().size() && pieces_[index].table == kNoTable) {
    const ParagraphStyle& look = text_.styleOf(text_.paragraphs()[paragraph]);
    if (piece.begin == beginOf(paragraph)) above = spaceBefore(look);
    if (piece.next >= text_.paragraphs()[paragraph].end) below = spaceAfter(look);
  }
  return std::make_shared<const RichPieceLayout>(piece, documentOf(index, piece, style), above, below);
}

}  // namespace tarnix::qt
