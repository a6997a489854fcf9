#include "platform/foundation/url.h"

#include <string>
#include <string_view>

namespace tarnix {
namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

String joined(const String& base, const String& path) {
  if (path.empty()) return base;
  return base.str() + (base.view().ends_with('/') ? "" : "/") + path.str();
}

// The text behind the last slash.
std::string_view nameIn(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

URL::URL(const String& filePath, DirectoryHint hint, const std::optional<URL>& relativeTo) {
  const bool isJoined = relativeTo && !filePath.hasPrefix("/");
  const String whole = isJoined ? joined(relativeTo->path(), filePath) : filePath;
  const std::string_view trimmed = withoutTrailingSlashes(whole);
  path_ = trimmed.size() == whole.size() ? whole : String(trimmed);
  hasDirectoryPath_ = hint == DirectoryHint::isDirectory ||
                      (hint == DirectoryHint::inferFromPath && whole.view().ends_with('/'));
}

String URL::lastPathComponent() const { return path_.view() == "/" ? path_ : String(nameIn(path_)); }

URL URL::deletingPathExtension() const {
  const std::string_view name = nameIn(path_);
  const auto dot = name.rfind('.');
  const auto nameStart = name.find_first_not_of('.');
  const bool hasExtension = dot != std::string_view::npos && nameStart < dot && dot + 1 < name.size();
  if (!hasExtension) return *this;
  const std::string_view kept = path_.view().substr(0, path_.size() - (name.size() - dot));
  return URL(kept, hasDirectoryPath_ ? DirectoryHint::isDirectory : DirectoryHint::notDirectory);
}

}  // namespace tarnix
