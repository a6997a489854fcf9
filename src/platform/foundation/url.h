#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/foundation/string.h"

namespace tarnix {

// The location of a file, or any other absolute URL (RFC 3986), as the platform's URL type presents it.
// Compared by what it locates: a file by its path, anything else by its text.
class URL {
 public:
  enum class DirectoryHint { isDirectory, notDirectory, inferFromPath };

  // Takes `path` as it stands, a scheme inside it included; nothing is decoded and no file is asked. A
  // relative path is joined to `base` when there is one. `inferFromPath` reads a trailing slash as a
  // directory.
  explicit URL(const String& filePath, DirectoryHint hint = DirectoryHint::inferFromPath,
               const std::optional<URL>& relativeTo = std::nullopt);

  // Reads what `absoluteString` writes, and other absolute URLs, which keep their text. Absent for texts
  // without a scheme, with characters that a URL can't have, or with a broken percent-encoding; and for file
  // URLs with another host than none or localhost, with a query or fragment, or with an encoded NUL or slash.
  static std::optional<URL> fromString(std::string_view absolute);
  // A file's path is percent-encoded but for its unreserved characters and slashes: "file:///a%20b/". A
  // relative path has no slashes before it: "file:b".
  String absoluteString() const;

  // The path without a trailing slash; "/" for the root. Decoded for a file, else as it stands in the text.
  String path() const;
  bool isFileURL() const { return isFileURL_; }
  bool hasDirectoryPath() const { return hasDirectoryPath_; }
  // The text behind the last slash; "/" for the root, empty for an empty path.
  String lastPathComponent() const;
  // Without the extension of the last component: "/a/b.tar.gz" gives "/a/b.tar", "/a/.profile" stays.
  URL deletingPathExtension() const;

  auto operator<=>(const URL&) const = default;

 private:
  String text_;  // The path of a file, the whole of any other URL.
  bool hasDirectoryPath_ = false;
  bool isFileURL_ = true;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::URL> {
  std::size_t operator()(const tarnix::URL& url) const noexcept {
    const tarnix::String text = url.isFileURL() ? url.path() : url.absoluteString();
    return std::hash<tarnix::String>{}(text)*2 + (url.hasDirectoryPath() ? 1 : 0);
  }
};
