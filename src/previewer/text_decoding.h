#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnix::previewer {

// The bytes as UTF-8; absent where they are no text. `isPart`: the last character may be cut. Unicode in any
// of its forms is told by its mark or by what only it looks like; other encodings by their letters,
// Windows-1252 where these don't tell.
std::optional<std::string> decodedText(std::string_view bytes, bool isPart);

}  // namespace tarnix::previewer
