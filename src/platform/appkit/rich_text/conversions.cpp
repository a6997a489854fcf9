#include "platform/appkit/rich_text/conversions.h"

#include "platform/appkit/rich_text/html/html_reader.h"
#include "platform/appkit/rich_text/html/html_writer.h"
#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/appkit/rich_text/rtf/rtf_writer.h"
#include "platform/appkit/rich_text/text/plain_text.h"

namespace tarnix {
namespace {

bool isBlank(const NSAttributedString& text) {
  return plainTextOf(text).view().find_first_not_of(" \t\n") == std::string_view::npos;
}

}  // namespace

std::optional<String> rtfFromHtml(std::string_view html) {
  const NSAttributedString text = attributedStringFromHtml(html);
  return isBlank(text) ? std::nullopt : std::optional(rtfFrom(text));
}

std::optional<RichTextForms> formsOfRtf(const String& rtf) {
  const auto text = attributedStringFromRtf(rtf);
  if (!text) return std::nullopt;
  return RichTextForms{htmlFrom(*text), plainTextOf(*text)};
}

}  // namespace tarnix
