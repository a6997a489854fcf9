#pragma once

#include <string>
#include <string_view>

namespace tarnix {

// The text of an HTML document in UTF-8: by its mark, by zero bytes that only UTF-16 has, as UTF-8 where it
// is such, else by what its `meta` element says, else as windows-1252. What other systems put before the
// first tag is left out.
std::string htmlText(std::string_view bytes);

}  // namespace tarnix
