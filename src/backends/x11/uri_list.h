#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix::x11 {

// What a list of URIs names.
struct UriList {
  // Absolute paths of local files, in order. Whatever bytes the file names hold.
  std::vector<String> paths;
  bool hasOthers = false;

  bool operator==(const UriList&) const = default;
};

// "text/uri-list" (RFC 2483): one URI a line, lines that begin with '#' are remarks.
UriList parseUriList(std::string_view text);

// "x-special/gnome-copied-files": "copy" or "cut", then one URI a line.
UriList parseCopiedFiles(std::string_view text);

// The path that a "file" URI names (RFC 8089); absent for other schemes, other hosts and relative paths. The
// escapes %00 and %2F stay as they are, since no file name can hold what they stand for.
std::optional<String> localPath(std::string_view uri);

// Some file managers put the list of copied files, under a heading of their own, where text is expected.
bool isFileListInDisguise(std::string_view text);

}  // namespace tarnix::x11
