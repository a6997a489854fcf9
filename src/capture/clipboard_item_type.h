#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix {

// The kind of a clip. Its raw value names the system symbol that stands beside the clip's title.
enum class ClipboardItemType : std::uint8_t { fileItem, textItem, unassigned };

const String& rawValue(ClipboardItemType type);

// Absent for any text that is no raw value.
std::optional<ClipboardItemType> clipboardItemType(std::string_view rawValue);

}  // namespace tarnix
