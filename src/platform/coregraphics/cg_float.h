#pragma once

namespace tarnix {

// The floating type of graphics: coordinates and colour components.
using CGFloat = double;

}  // namespace tarnix
