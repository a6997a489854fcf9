#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/appkit/pasteboard.h"
#include "platform/foundation/string.h"
#include "platform/foundation/ut_type.h"

namespace tarnix {

// A dynamic identifier is a type name made up on the spot for content that has no uniform type. Behind
// "dyn.a" it holds, in base 32, tags such as "?0=6:4=Foo": what the type conforms to and the older names it
// stands for.

// From the short codes in tags to the names they stand for.
const std::unordered_map<String, String>& dynamicTagTable();

// The bytes that `input` encodes, five bits to a character. Absent, with a line on standard output that says
// why, when a character is not in `alphabet`, which is ASCII, or bits that are not zero are left over.
std::optional<std::string> dynamicTagDecode(std::string_view alphabet, std::string_view input);

// Tag values by tag name; empty for anything that is not a dynamic identifier or can't be read.
std::unordered_map<String, String> decodeDynamicType(std::string_view identifier);

// The older pasteboard name that a dynamic type stands for; absent for any other type.
std::optional<NSPasteboard::PasteboardType> nspboardName(const NSPasteboard::PasteboardType& type);

// The name to show for `type`: the older name that it stands for, otherwise its own.
String readableName(const NSPasteboard::PasteboardType& type);

}  // namespace tarnix
