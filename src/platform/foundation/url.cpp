#include "platform/foundation/url.h"

#include <string>
#include <string_view>

#include "platform/foundation/url_text.h"

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
  text_ = trimmed.size() == whole.size() ? whole : String(trimmed);
  hasDirectoryPath_ = hint == DirectoryHint::isDirectory ||
                      (hint == DirectoryHint::inferFromPath && whole.view().ends_with('/'));
}

std::optional<URL> URL::fromString(std::string_view absolute) {
  const auto parts = URLParts::of(absolute);
  if (!parts) return std::nullopt;
  if (parts->isFile()) {
    const auto path = parts->filePath();
    return path ? std::optional(URL(*path)) : std::nullopt;
  }
  URL url(parts->path);
  url.text_ = absolute;
  url.isFileURL_ = false;
  return url;
}

String URL::path() const {
  if (isFileURL_) return text_;
  const auto parts = URLParts::of(text_);
  return withoutTrailingSlashes(parts ? parts->path : std::string_view());
}

String URL::absoluteString() const {
  if (!isFileURL_) return text_;
  const bool needsSlash = hasDirectoryPath_ && !text_.empty() && text_ != "/";
  return (text_.hasPrefix("/") ? "file://" : "file:") + percentEncodedPath(text_) + (needsSlash ? "/" : "");
}

String URL::lastPathComponent() const {
  const String whole = path();
  return whole == "/" ? whole : String(nameIn(whole));
}

URL URL::deletingPathExtension() const {
  const String whole = path();
  const std::string_view name = nameIn(whole);
  const auto dot = name.rfind('.');
  const auto nameStart = name.find_first_not_of('.');
  const bool hasExtension = dot != std::string_view::npos && nameStart < dot && dot + 1 < name.size();
  if (!hasExtension) return *this;
  const std::string_view kept = whole.view().substr(0, whole.size() - (name.size() - dot));
  URL shortened(kept, hasDirectoryPath_ ? DirectoryHint::isDirectory : DirectoryHint::notDirectory);
  if (!isFileURL_) {
    shortened.text_ = URLParts::of(text_)->withPath(kept, hasDirectoryPath_);
    shortened.isFileURL_ = false;
  }
  return shortened;
}

}  // namespace tarnix
