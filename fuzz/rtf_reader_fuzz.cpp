// Any bytes are read, in one go and in slices, which give the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/appkit/rich_text/rtf/rtf_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnix;
  const String rtf(std::string_view(reinterpret_cast<const char*>(data), size));
  const auto whole = attributedStringFromRtf(rtf);
  auto slices = RtfReader::create(rtf);
  if (whole.has_value() != slices.has_value()) std::abort();
  if (!whole) return 0;
  while (slices->advance(7)) {
  }
  if (!(slices->take() == *whole)) std::abort();
  if (!attributedStringFromRtf(rtfFrom(*whole))) std::abort();
  return 0;
}
