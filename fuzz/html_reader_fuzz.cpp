// Any bytes are read; what is written of them is read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/appkit/rich_text/html/html_reader.h"
#include "platform/appkit/rich_text/html/html_writer.h"
#include "platform/foundation/utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnix;
  const NSAttributedString text =
      attributedStringFromHtml(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!isValidUtf8(text.string())) std::abort();
  attributedStringFromHtml(htmlFrom(text));
  return 0;
}
