#pragma once

#include <optional>
#include <utility>

#include "platform/foundation/url.h"

namespace tarnix {

// What can be previewed. Owned by `shared_ptr`.
class QLPreviewItem {
 public:
  virtual ~QLPreviewItem() = default;
  // Absent while there is nothing to preview yet.
  virtual std::optional<URL> previewItemURL() const = 0;
};

// A URL as an object, which is its own preview item.
class NSURL final : public QLPreviewItem {
 public:
  explicit NSURL(URL url) : url_(std::move(url)) {}
  std::optional<URL> previewItemURL() const override { return url_; }

 private:
  URL url_;
};

}  // namespace tarnix
