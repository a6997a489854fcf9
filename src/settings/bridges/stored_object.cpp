#include "settings/bridges/stored_object.h"

namespace tarnix::internal {

WidestNumber widestNumberOf(const PropertyList& object) {
  const auto widest = [](const auto& value) -> WidestNumber {
    using T = std::decay_t<decltype(value)>;
    if constexpr (std::floating_point<T>)
      return {{}, {}, value};
    else if constexpr (IsNumber<T> && std::signed_integral<T>)
      return {value, {}, {}};
    else if constexpr (IsNumber<T>)
      return {{}, value, {}};
    else
      return {};
  };
  return std::visit(widest, object.value);
}

}  // namespace tarnix::internal
