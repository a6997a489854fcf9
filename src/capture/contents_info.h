#pragma once

#include <optional>

#include "platform/appkit/pasteboard.h"
#include "platform/foundation/date.h"
#include "platform/foundation/string.h"
#include "platform/foundation/url.h"
#include "platform/foundation/uuid.h"

namespace tarnix {

// Where one generation of a pasteboard's content came from, as far as it is known. Not changed once made.
struct NSPasteboard::ContentsInfo {
  UUID id;  // Random, one for each generation.
  // When the generation was seen, up to one poll interval after the copy.
  Date created;
  std::optional<String> sourceAppBundleIdentifier;
  std::optional<URL> sourceAppURL;

  friend bool operator==(const ContentsInfo&, const ContentsInfo&) = default;
};

}  // namespace tarnix
