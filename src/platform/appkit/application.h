#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/combine/publisher.h"
#include "platform/foundation/string.h"

namespace tarnix {

// The running application: sends actions along the responder chain.
class NSApplication {
 public:
  // Sends to the responder for `action` that was added last. False when there is none.
  bool sendAction(const String& action) const;
  AnyCancellable addResponder(const String& action, std::function<void()> respond);

 private:
  using Responders = std::vector<std::pair<String, std::shared_ptr<std::function<void()>>>>;
  std::shared_ptr<Responders> responders_ = std::make_shared<Responders>();
};

// The application object of the installed platform.
NSApplication& NSApp();

}  // namespace tarnix
