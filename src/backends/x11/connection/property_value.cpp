#include "backends/x11/connection/property_value.h"

#include <xcb/xcb.h>

#include <algorithm>

#include "backends/x11/text/text_decoder.h"

namespace tarnix::x11 {

PropertyValue::PropertyValue(const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->type == XCB_ATOM_NONE) return;
  type_ = reply->type;
  const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply));
  const void* value = xcb_get_property_value(reply);
  if (reply->format == 8) bytes_.assign(static_cast<const char*>(value), size);
  if (reply->format == 32) {
    const auto* first = static_cast<const std::uint32_t*>(value);
    items_.assign(first, first + size / sizeof *first);
  }
}

std::optional<std::uint32_t> PropertyValue::firstItem() const {
  return items_.empty() ? std::nullopt : std::optional(items_.front());
}

bool PropertyValue::contains(std::uint32_t item) const {
  return std::ranges::find(items_, item) != items_.end();
}

std::optional<String> PropertyValue::text() const {
  if (bytes_.empty()) return std::nullopt;
  TextDecoder decoder(type_ == XCB_ATOM_STRING ? TextEncoding::latin1 : TextEncoding::utf8);
  decoder.append(bytes_);
  return decoder.finish();
}

}  // namespace tarnix::x11
