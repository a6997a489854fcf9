#include "platform/appkit/workspace.h"

namespace tarnix {

std::shared_ptr<NSRunningApplication> NSRunningApplication::runningApplicationWithProcessIdentifier(
    int processIdentifier) {
  return NSWorkspace::sharedWorkspace().runningApplication(processIdentifier);
}

}  // namespace tarnix
