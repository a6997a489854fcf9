#include "platform/appkit/workspace.h"

#include "platform/platform.h"

namespace tarnix {

std::shared_ptr<NSRunningApplication> NSRunningApplication::runningApplicationWithProcessIdentifier(
    int processIdentifier) {
  return NSWorkspace::sharedWorkspace().runningApplication(processIdentifier);
}

NSWorkspace& NSWorkspace::sharedWorkspace() { return *Platform::installed().workspace; }

std::vector<NSScreen> NSScreen::screens() { return Platform::installed().screens->screens(); }

}  // namespace tarnix
