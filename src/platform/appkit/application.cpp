#include "platform/appkit/application.h"

#include <algorithm>

namespace tarnix {

bool NSApplication::sendAction(const String& action) const {
  const auto handles = [&](const auto& responder) { return responder.first == action; };
  const auto last = std::find_if(responders_->rbegin(), responders_->rend(), handles);
  if (last == responders_->rend()) return false;
  const auto respond = last->second;  // The responder may drop itself.
  (*respond)();
  return true;
}

AnyCancellable NSApplication::addResponder(const String& action, std::function<void()> respond) {
  const auto entry = std::make_shared<std::function<void()>>(std::move(respond));
  responders_->emplace_back(action, entry);
  return AnyCancellable([entry, weak = std::weak_ptr(responders_)] {
    if (const auto responders = weak.lock()) {
      std::erase_if(*responders, [&](const auto& responder) { return responder.second == entry; });
    }
  });
}

}  // namespace tarnix
