#include "platform/appkit/rich_text/rtf/rtf_reader.h"

#include <utility>

#include "platform/appkit/rich_text/rtf/rtf_parser.h"

namespace tarnix {

RtfReader::RtfReader(std::unique_ptr<Parser> parser) : parser_(std::move(parser)) {}
RtfReader::RtfReader(RtfReader&&) noexcept = default;
RtfReader& RtfReader::operator=(RtfReader&&) noexcept = default;
RtfReader::~RtfReader() = default;

std::optional<RtfReader> RtfReader::create(const String& rtf) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  std::string_view source = rtf;
  if (source.starts_with(kUtf8Mark)) source.remove_prefix(kUtf8Mark.size());
  const std::size_t start = source.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos || !source.substr(start).starts_with("{\\rtf")) return std::nullopt;
  return RtfReader(std::make_unique<Parser>(rtf));
}

bool RtfReader::advance(std::size_t size) { return parser_->advance(size); }

NSAttributedString RtfReader::take() { return parser_->take(); }

std::optional<NSAttributedString> attributedStringFromRtf(const String& rtf) {
  auto reader = RtfReader::create(rtf);
  if (!reader) return std::nullopt;
  while (reader->advance(rtf.size())) {
  }
  return reader->take();
}

}  // namespace tarnix
