#pragma once

#include <string>
#include <variant>

#include "platform/foundation/string.h"

namespace tarnix::qt {

// What is to be previewed: the file or folder at a path, or bytes that the window holds, of any kind.
using PreviewSource = std::variant<std::string, String>;

inline PreviewSource previewOfPath(std::string path) {
  return PreviewSource(std::in_place_index<0>, std::move(path));
}
inline PreviewSource previewOfBytes(String bytes) {
  return PreviewSource(std::in_place_index<1>, std::move(bytes));
}

// More bytes than these are not handed over.
inline constexpr std::size_t kMostPreviewedBytes = 64 * 1024 * 1024;

}  // namespace tarnix::qt
