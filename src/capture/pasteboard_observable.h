#pragma once

#include <memory>
#include <optional>

#include "capture/contents_info.h"
#include "platform/appkit/pasteboard.h"
#include "platform/combine/observable_object.h"

namespace tarnix {

// The poll of a pasteboard. It holds the pasteboard weakly and falls silent when that goes. What lies on the
// pasteboard at the start gives a value only if it is marked with its source, and then during the
// subscription.
Publisher<NSPasteboard::ContentsInfo> contentsInfoPublisher(const std::shared_ptr<NSPasteboard>& pasteboard);

// Watches a pasteboard for as long as it lives and tells its observers of each new generation of content. A
// generation is seen at the first tick of the main run loop's 0.2 s poll after it; several between two ticks
// count as one. Main thread only.
class NSPasteboard::Observable : public ObservableObject {
 public:
  explicit Observable(std::shared_ptr<NSPasteboard> pasteboard);

  const std::shared_ptr<NSPasteboard>& pasteboard() const { return pasteboard_.get(); }
  // Starts anew with the other pasteboard; `info` stays until that has news.
  void setPasteboard(std::shared_ptr<NSPasteboard> pasteboard);
  // The latest generation; absent until there is one.
  const std::optional<ContentsInfo>& info() const { return info_.get(); }

  // Watches from the beginning. The former watch ends once the new one has begun.
  void start();

 private:
  Published<std::shared_ptr<NSPasteboard>> pasteboard_;
  Published<std::optional<ContentsInfo>> info_{this, std::nullopt};
  AnyCancellable cancellable_;
};

}  // namespace tarnix
