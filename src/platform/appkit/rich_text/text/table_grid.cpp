#include "platform/appkit/rich_text/text/table_grid.h"

#include <algorithm>
#include <limits>

namespace tarnix {
namespace {

constexpr std::size_t kMostKinds = 256;  // Of rows; further ones are taken for the last of them.
constexpr std::size_t kMostColumns = 256;
// Edges that are nearer to each other are one: documents round them row by row.
constexpr std::int32_t kLeastWidth = 30;
constexpr std::uint16_t kMostRowSpan = std::numeric_limits<std::uint16_t>::max();

bool isOrdered(const TableRow& row) {
  std::int32_t last = row.leftEdge;
  for (const TableRow::Cell& cell : row.cells) {
    if (cell.rightEdge <= last) return false;
    last = cell.rightEdge;
  }
  return !row.cells.empty();
}

// Where the cells of one kind of row stand, by their number in the row.
struct Place {
  std::uint32_t column = 0;
  std::uint16_t span = 1;
  bool goesOnInRows = false;
  bool isCovered = false;  // By the cell before it.
};
using Places = std::vector<Place>;

std::uint32_t columnAt(const std::vector<std::int32_t>& edges, std::int32_t edge) {
  const auto next = std::upper_bound(edges.begin(), edges.end(), edge);
  return static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(next - edges.begin() - 1, 0));
}

Places placesOf(const TableRow& row, const std::vector<std::int32_t>& edges) {
  Places result;
  const bool isOnGrid = isOrdered(row) && edges.size() > 1;
  std::int32_t left = row.leftEdge;
  std::uint32_t next = 0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < row.cells.size(); ++i) {
    const TableRow::Cell& cell = row.cells[i];
    const std::uint32_t begin = isOnGrid ? std::max(columnAt(edges, left), next) : next;
    const std::uint32_t end = isOnGrid ? columnAt(edges, cell.rightEdge) : next;
    next = std::max(end, begin + 1);
    Place place{begin, static_cast<std::uint16_t>(next - begin), cell.goesOnInRows};
    place.isCovered = cell.goesOnInColumns && i > 0;
    if (place.isCovered) {
      Place& wide = result[first];
      wide.span = static_cast<std::uint16_t>(place.column + place.span - wide.column);
    } else {
      first = i;
    }
    result.push_back(place);
    left = cell.rightEdge;
  }
  return result;
}

// The cells at hand of a table, row by row. A cell that a table within it divides has several entries.
class Arrangement {
 public:
  Arrangement(std::span<TableCell> cells, std::uint32_t table) : cells_(cells), table_(table) {}

  bool isAtEnd() {
    while (at_ < cells_.size() && !isOwn(cells_[at_])) ++at_;
    return at_ == cells_.size();
  }
  std::uint32_t row() const { return cells_[at_].row; }

  // Leaves out the cells that are covered, of which there is no entry unless they hold something.
  void placeRow(const Places& places) {
    std::vector<Above> above;
    const std::uint32_t row = this->row();
    std::size_t number = 0;
    for (; !isAtEnd() && this->row() == row; ++at_) {
      TableCell& cell = cells_[at_];
      const std::size_t own = cell.column;
      if (own >= places.size()) continue;
      goOn(row, std::span(places).subspan(std::min(number, own), own - std::min(number, own)), above);
      number = own + 1;
      cell.column = places[own].column;
      cell.columnSpan = places[own].span;
      const bool isAgain = !above.empty() && above.back().column == cell.column;
      if (isAgain) {
        above.back().last = at_;
      } else {
        above.push_back({cell.column, at_, at_});
      }
    }
    goOn(row, std::span(places).subspan(number), above);
    above_ = std::move(above);
    lastRow_ = row;
  }

 private:
  // The entries of a cell that may reach into the rows below.
  struct Above {
    std::uint32_t column = 0;
    std::size_t first = 0;
    std::size_t last = 0;
  };

  bool isOwn(const TableCell& cell) const { return cell.table == table_; }

  // What goes on in the places of a row that hold nothing of their own.
  void goOn(std::uint32_t row, std::span<const Place> places, std::vector<Above>& now) {
    if (row != lastRow_ + 1) return;
    for (const Place& place : places)
      if (place.goesOnInRows && !place.isCovered) goOn(place, now);
  }

  void goOn(const Place& place, std::vector<Above>& now) {
    const auto found = std::ranges::lower_bound(above_, place.column, {}, &Above::column);
    if (found == above_.end() || found->column != place.column) return;
    for (std::size_t i = found->first; i <= found->last; ++i)
      if (isOwn(cells_[i]) && cells_[i].rowSpan < kMostRowSpan) ++cells_[i].rowSpan;
    now.push_back(*found);
  }

  std::span<TableCell> cells_;
  std::uint32_t table_;
  std::size_t at_ = 0;
  std::vector<Above> above_;  // By column.
  std::uint32_t lastRow_ = 0;
};

}  // namespace

void TableGrid::add(const TableRow& row) {
  const bool isAsBefore = !rowNumbers_.empty() && rows_[rowNumbers_.back()] == row;
  if (isAsBefore) return rowNumbers_.push_back(rowNumbers_.back());
  const auto known = std::ranges::find(rows_, row);
  if (known == rows_.end() && rows_.size() >= kMostKinds) return rowNumbers_.push_back(kMostKinds - 1);
  rowNumbers_.push_back(static_cast<std::uint32_t>(known - rows_.begin()));
  if (known == rows_.end()) rows_.push_back(row);
}

// Empty where there are too many for a table that could be shown.
std::vector<std::int32_t> TableGrid::edges() const {
  std::vector<std::int32_t> all;
  for (const TableRow& row : rows_) {
    if (!isOrdered(row)) continue;
    all.push_back(row.leftEdge);
    for (const TableRow::Cell& cell : row.cells) all.push_back(cell.rightEdge);
  }
  std::ranges::sort(all);
  std::vector<std::int32_t> edges;
  for (const std::int32_t edge : all)
    if (edges.empty() || std::int64_t{edge} - edges.back() >= kLeastWidth) edges.push_back(edge);
  if (edges.size() > kMostColumns + 1) edges.clear();
  return edges;
}

void TableGrid::arrange(std::span<TableCell> cells, std::uint32_t table) const {
  const std::vector<std::int32_t> edges = this->edges();
  std::vector<Places> places;
  for (const TableRow& row : rows_) places.push_back(placesOf(row, edges));
  Arrangement arrangement(cells, table);
  while (!arrangement.isAtEnd()) {
    const std::uint32_t row = arrangement.row();
    static const Places kNone;
    arrangement.placeRow(row < rowNumbers_.size() ? places[rowNumbers_[row]] : kNone);
  }
}

}  // namespace tarnix
