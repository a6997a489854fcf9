#pragma once

#include <QString>
#include <cstddef>
#include <string_view>

#include "platform/foundation/utf8.h"

namespace tarnix::qt {

// True for what is drawn together with the character before it: marks, joiners, variation selectors.
bool continuesCluster(char32_t value);

inline std::size_t utf16Length(char32_t value) { return value > 0xFFFF ? 2 : 1; }

// UTF-16 units of the well or ill-formed text `bytes`, which starts and ends between code points.
std::size_t utf16Length(std::string_view bytes);

// The text itself, ill-formed bytes replaced.
QString decoded(std::string_view bytes);

}  // namespace tarnix::qt
