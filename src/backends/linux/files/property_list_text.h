#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/date.h"
#include "platform/foundation/property_list.h"

// The text forms of single values in XML property lists. Reading is exact: no blanks around a value, no text
// behind it, no value out of range.
namespace tarnix::linux_desktop {

// Base 10 with an optional sign. Gives an `int64_t` where it fits, else a `uint64_t`.
std::optional<PropertyList> integerFromText(std::string_view text);

// Digits, an optional fraction and an optional exponent; also "nan", "+infinity" and "-infinity".
std::optional<double> realFromText(std::string_view text);
// The shortest text that reads back as the same number.
std::string textOf(double real);

// `YYYY-MM-DDTHH:MM:SSZ`, years 0000 to 9999.
std::optional<Date> dateFromText(std::string_view text);
// The format holds whole seconds: a fraction is cut off, towards the past. Absent outside the years that can
// be read.
std::optional<std::string> textOf(Date date);

// Base64 (RFC 4648, section 4) with blanks anywhere.
std::optional<PropertyList::Data> dataFromText(std::string_view text);
std::string textOf(const PropertyList::Data& data);

// Whether XML 1.0 can carry the text: well-formed UTF-8 (section 2.2) without control characters other than
// tab, line feed and carriage return, and without U+FFFE and U+FFFF.
bool isXMLText(std::string_view text);

}  // namespace tarnix::linux_desktop
