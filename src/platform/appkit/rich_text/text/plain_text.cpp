#include "platform/appkit/rich_text/text/plain_text.h"

#include "platform/foundation/utf8.h"

namespace tarnix {
String plainTextOf(const NSAttributedString& text) {
  StringBuilder plain;
  std::string_view rest = text.string();
  while (!rest.empty()) {
    const std::size_t simple = rest.find_first_of("\f\xE2\xEF");
    plain.append(rest.substr(0, simple));
    if (simple == std::string_view::npos) break;
    rest.remove_prefix(simple);
    const CodePoint point = codePointAt(rest);
    const bool isBreak = point.value == '\f' || rest.starts_with(kLineSeparator);
    if (isBreak) plain.append("\n");
    if (!isBreak && !rest.starts_with(kAttachment)) plain.append(rest.substr(0, point.length));
    rest.remove_prefix(point.length);
  }
  return plain.take();
}

}  // namespace tarnix
