#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "platform/coregraphics/rect.h"
#include "platform/foundation/string.h"

namespace tarnix {

// One window as the window server describes it. A field is absent where the server does not say, and holds
// another kind than expected where the server is at fault. The C++ names stand for the keys: `number` for
// `kCGWindowNumber` and so on.
struct CGWindowDictionary {
  using Number = std::variant<std::int64_t, double>;

  std::optional<Number> number;
  std::optional<String> name;
  std::optional<Number> ownerPID;
  std::optional<String> ownerName;
  std::optional<CGRect> bounds;
  std::optional<Number> layer;
  std::optional<Number> alpha;
  std::optional<Number> memoryUsage;
  std::optional<Number> sharingState;
  std::optional<Number> isOnscreen;
};

using CGWindowListOption = std::uint32_t;
using CGWindowID = std::uint32_t;
inline constexpr CGWindowListOption kCGWindowListOptionOnScreenOnly = 1;
inline constexpr CGWindowListOption kCGWindowListExcludeDesktopElements = 16;
inline constexpr CGWindowID kCGNullWindowID = 0;

// The window server's list.
class CGWindowServer {
 public:
  virtual ~CGWindowServer() = default;
  // Front to back; absent when there is no list to be had. Answers from memory, without waiting.
  virtual std::optional<std::vector<CGWindowDictionary>> copyWindowInfo(CGWindowListOption options,
                                                                        CGWindowID relativeTo) const = 0;
};

// Asks the installed platform's window server.
std::optional<std::vector<CGWindowDictionary>> CGWindowListCopyWindowInfo(CGWindowListOption options,
                                                                          CGWindowID relativeTo);

}  // namespace tarnix
