#pragma once

#include <compare>
#include <functional>
#include <optional>

#include "platform/foundation/string.h"

namespace tarnix {

// The location of a file, as the platform's URL type presents it. Compared by what it locates.
class URL {
 public:
  enum class DirectoryHint { isDirectory, notDirectory, inferFromPath };

  // Takes `path` as it stands, a scheme inside it included; nothing is decoded and no file is asked. A
  // relative path is joined to `base` when there is one. `inferFromPath` reads a trailing slash as a
  // directory.
  explicit URL(const String& filePath, DirectoryHint hint = DirectoryHint::inferFromPath,
               const std::optional<URL>& relativeTo = std::nullopt);

  // The path without a trailing slash; "/" for the root.
  const String& path() const { return path_; }
  bool isFileURL() const { return true; }
  bool hasDirectoryPath() const { return hasDirectoryPath_; }
  // The text behind the last slash; "/" for the root, empty for an empty path.
  String lastPathComponent() const;
  // Without the extension of the last component: "/a/b.tar.gz" gives "/a/b.tar", "/a/.profile" stays.
  URL deletingPathExtension() const;

  auto operator<=>(const URL&) const = default;

 private:
  String path_;
  bool hasDirectoryPath_ = false;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::URL> {
  std::size_t operator()(const tarnix::URL& url) const noexcept {
    return std::hash<tarnix::String>{}(url.path()) * 2 + (url.hasDirectoryPath() ? 1 : 0);
  }
};
