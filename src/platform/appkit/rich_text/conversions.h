#pragma once

#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

// What a pasteboard makes of one form of a formatted text when another is asked for. All of them may take
// longer than a frame, and may be called on any thread.
namespace tarnix {

// Absent where there is nothing to read, pictures aside.
std::optional<String> rtfFromHtml(std::string_view html);

// One text in the forms that other programs read; absent unless `rtf` is RTF.
struct RichTextForms {
  String html;
  String plainText;
};
std::optional<RichTextForms> formsOfRtf(const String& rtf);

}  // namespace tarnix
