#pragma once

#include <optional>
#include <string>

#include "platform/foundation/property_list.h"

namespace tarnix::linux_desktop {

// The value as an XML property list, with sorted keys and one tab for each level, so that a change of one
// value changes one line.
//
// Absent when the format has no form for a part of it: a text or key that XML cannot carry (`isXMLText`), a
// date outside the years 0 to 9999, containers nested deeper than the reader accepts. Dates lose their
// fractions of a second. A `uint64_t` that fits an `int64_t` reads back as one.
std::optional<std::string> xmlPropertyList(const PropertyList& root);

}  // namespace tarnix::linux_desktop
