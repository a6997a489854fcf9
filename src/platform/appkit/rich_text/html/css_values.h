#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/appkit/text_attributes.h"

// The values of style sheets, as far as texts need them.
namespace tarnix::css {

// "color: red; ..." in order, names and values in lower case but for what is quoted.
struct Declaration {
  std::string name;
  std::string value;
  bool isImportant = false;
};
std::vector<Declaration> declarationsIn(std::string_view text);

// A colour on white. `isNone` for one that is transparent; absent for what is no colour of its own, such as
// that of the system's windows.
struct ColorValue {
  TextColor color;
  bool isNone = false;
};
std::optional<ColorValue> colorFrom(std::string_view value);

// In points; `em` is what 1em and 100% are. Absent for what is no length.
std::optional<double> lengthFrom(std::string_view value, double em);
// Of `font-size`, keywords included; `parent` is that of the parent.
std::optional<double> fontSizeFrom(std::string_view value, double parent);
// The first family of a list, as it is written; empty for the ones that stand for the system's.
String familyFrom(std::string_view value);

std::string lowercase(std::string_view text);
std::string_view trimmed(std::string_view text);
// The words between blanks, where brackets hold them together.
std::vector<std::string_view> wordsOf(std::string_view value);

}  // namespace tarnix::css
