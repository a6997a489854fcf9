#pragma once

#include <utility>

#include "platform/combine/publisher.h"
#include "platform/foundation/object.h"

namespace tarnix {

// A view of the toolkit as a model: what it is to show, which a renderer mirrors and tests read. Main thread
// only.
class NSView : public NSObject {
 public:
  // Sends after each change of what is to be shown.
  Publisher<Void> changes() const { return changed_.publisher(); }

 protected:
  void noteChange() { changed_.send({}); }
  template <typename T>
  void change(T& field, T value) {
    if (field == value) return;
    field = std::move(value);
    noteChange();
  }

 private:
  Subject<Void> changed_;
};

}  // namespace tarnix
