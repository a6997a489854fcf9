#include "platform/platform.h"

#include <cstdlib>
#include <utility>

namespace tarnix {
namespace {

const Platform* current = nullptr;

}  // namespace

const Platform& Platform::installed() {
  if (current == nullptr) std::abort();
  return *current;
}

PlatformScope::PlatformScope(Platform platform)
    : platform_(std::move(platform)), former_(std::exchange(current, &platform_)) {}

PlatformScope::~PlatformScope() { current = former_; }

}  // namespace tarnix
