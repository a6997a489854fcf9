#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix {

// Where the parts of an absolute URL's text lie (RFC 3986, section 3). Borrows the text.
struct URLParts {
  std::string_view scheme;  // Without the colon.
  std::optional<std::string_view> authority;
  std::string_view path;
  std::string_view tail;  // Query and fragment with their marks.

  // Absent for a text that is not an absolute URL.
  static std::optional<URLParts> of(std::string_view text);

  bool isFile() const;
  // The decoded path of a file URL; absent when it locates no file of this machine.
  std::optional<String> filePath() const;
  // The text with another path, which stands for a directory or not.
  std::string withPath(std::string_view other, bool isDirectory) const;
};

// `path` with each byte that is neither unreserved (RFC 3986, section 2.3) nor a slash as "%" and two digits.
std::string percentEncodedPath(std::string_view path);

}  // namespace tarnix
