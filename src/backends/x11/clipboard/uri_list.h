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

// Reads a list that arrives in pieces, cut anywhere: "text/uri-list" (RFC 2483), one URI a line, lines that
// begin with '#' being remarks; or "x-special/gnome-copied-files", "copy" or "cut", then one URI a line. The
// list of another verb is empty.
class UriListReader {
 public:
  enum class Form { uriList, copiedFiles };
  explicit UriListReader(Form form) : isVerbNext_(form == Form::copiedFiles) {}

  void append(std::string_view bytes);
  // The last line need not be ended. The reader is used up.
  UriList finish();

 private:
  void takeLine(std::string_view line);

  UriList list_;
  std::string unfinished_;  // The beginning of a line whose end has not arrived.
  bool isVerbNext_;
  bool isIgnored_ = false;
};

// The path that a "file" URI names (RFC 8089); absent for other schemes, other hosts and relative paths. The
// escapes %00 and %2F stay as they are, since no file name can hold what they stand for.
std::optional<String> localPath(std::string_view uri);

// Some file managers put the list of copied files, under a heading of their own, where text is expected.
bool isFileListInDisguise(std::string_view text);

}  // namespace tarnix::x11
