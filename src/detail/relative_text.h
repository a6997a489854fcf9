#pragma once

#include "platform/foundation/date.h"
#include "platform/foundation/string.h"

namespace tarnix {

// How long ago a date is, in the largest unit that is full: "12 sec ago", "1 weeks ago". Negative seconds for
// a date to come. Weeks where the calendar knows no date so far from now.
String relativeText(const Date& date);

}  // namespace tarnix
