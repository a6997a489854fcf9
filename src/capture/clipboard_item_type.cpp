#include "capture/clipboard_item_type.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnix {
namespace {

using Row = std::pair<ClipboardItemType, String>;

const std::array<Row, 3>& rawValues() {
  static const std::array<Row, 3> rows = {
      Row{ClipboardItemType::fileItem, "doc"},
      Row{ClipboardItemType::textItem, "textformat.abc.dottedunderline"},
      Row{ClipboardItemType::unassigned, ""},
  };
  return rows;
}

}  // namespace

const String& rawValue(ClipboardItemType type) {
  return std::ranges::find(rawValues(), type, &Row::first)->second;
}

std::optional<ClipboardItemType> clipboardItemType(std::string_view rawValue) {
  const auto row =
      std::ranges::find(rawValues(), rawValue, [](const Row& each) { return each.second.view(); });
  return row == rawValues().end() ? std::nullopt : std::optional(row->first);
}

}  // namespace tarnix
