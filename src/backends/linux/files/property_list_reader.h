#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/foundation/property_list.h"

namespace tarnix::linux_desktop {

inline constexpr std::size_t kPropertyListSizeLimit = 1024 * 1024;  // Bytes.
inline constexpr std::size_t kPropertyListDepthLimit = 16;          // Arrays and dictionaries within another.

enum class PropertyListFault {
  none,
  tooLarge,
  tooDeep,
  notWellFormed,  // Not XML in UTF-8, cut short, or text behind the end.
  declaration,    // A document type of another name or with content of its own, an entity, another encoding.
  structure,      // An unknown element, attribute or text where the format has none, no value, two values.
  duplicateKey,
  value,  // The text of an element is none of its type.
};

// What came of reading. The value is absent exactly when there is a fault; `line` counts from 1.
struct PropertyListReading {
  std::optional<PropertyList> value;
  PropertyListFault fault = PropertyListFault::none;
  std::size_t line = 0;
};

// Reads an XML property list as a whole: a document that deviates anywhere is refused. The text may come from
// anywhere; nothing outside it is loaded, and neither its nesting nor its size can exhaust memory or stack.
PropertyListReading readXMLPropertyList(std::string_view xml);

}  // namespace tarnix::linux_desktop
