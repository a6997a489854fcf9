#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/appkit/pasteboard.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::test {

// Where a pasteboard of some backend is tried: the pasteboard itself, another program that copies to it, and
// its run loop.
class PasteboardStage {
 public:
  // What the other program copies. What is empty is not offered.
  struct Copy {
    std::string text = {};
    std::string rtf = {};
    std::vector<std::string> files = {};
    std::string source = {};
  };

  virtual ~PasteboardStage() = default;
  virtual NSPasteboard& pasteboard() = 0;
  virtual RunLoop& runLoop() = 0;
  // Lets the other program copy; returns when the pasteboard has changed, false when it does not.
  virtual bool copyElsewhere(const Copy& copy) = 0;
  virtual bool emptyElsewhere() = 0;
  // Gives everything that is under way the time to arrive.
  virtual void settle() = 0;
};

// What every backend's pasteboard is held to; each backend's tests instantiate it with a stage of theirs.
class PasteboardContract
    : public ::testing::TestWithParam<std::function<std::unique_ptr<PasteboardStage>()>> {
 protected:
  using Items = std::vector<std::shared_ptr<NSPasteboardItem>>;

  NSPasteboard& pasteboard() { return stage->pasteboard(); }
  Items items() { return pasteboard().pasteboardItems().value_or(Items()); }
  std::vector<std::string> typesOf(const NSPasteboardItem& item);

  std::unique_ptr<PasteboardStage> stage = GetParam()();
};

}  // namespace tarnix::test
