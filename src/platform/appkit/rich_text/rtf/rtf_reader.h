#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "platform/appkit/attributed_string.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Reads Rich Text Format 1.9.1, in slices. Nothing that a document refers to is fetched, opened or run. A
// damaged document is read as far as it goes; depth, tables and the size of what comes out are bounded.
class RtfReader {
 public:
  // Absent unless it begins with "{\rtf", behind white space or a mark of UTF-8 at most.
  static std::optional<RtfReader> create(const String& rtf);
  RtfReader(RtfReader&&) noexcept;
  RtfReader& operator=(RtfReader&&) noexcept;
  ~RtfReader();

  // Reads on for about `size` bytes; false at the end of the document.
  bool advance(std::size_t size);
  // What was read so far; the reader is at its end afterwards.
  NSAttributedString take();

 private:
  class Parser;
  explicit RtfReader(std::unique_ptr<Parser> parser);

  std::unique_ptr<Parser> parser_;
};

// The whole document at once.
std::optional<NSAttributedString> attributedStringFromRtf(const String& rtf);

}  // namespace tarnix
