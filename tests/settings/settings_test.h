#pragma once

#include <gmock/gmock.h>

#include <memory>

#include "platform/platform.h"
#include "platform/virtual_loop.h"

namespace tarnix {

// A platform that offers a run loop and settings in memory, and nothing else.
class SettingsTest : public testing::Test {
 protected:
  static std::shared_ptr<NSUserDefaults> makeSuite() {
    return NSUserDefaults::make(std::make_unique<MemoryDefaultsStorage>());
  }
  std::optional<PropertyList> stored(const String& name) const { return suite->objectForKey(name); }
  void store(const String& name, PropertyList::Value value) {
    suite->setObject(PropertyList{std::move(value)}, name);
  }
  void runLoop() { virtualLoop->advance({}); }

  std::shared_ptr<VirtualLoop> virtualLoop = std::make_shared<VirtualLoop>();
  std::shared_ptr<NSUserDefaults> suite = makeSuite();
  PlatformScope scope{[this] {
    Platform platform;
    platform.mainRunLoop = {virtualLoop, &virtualLoop->loop};
    platform.standardUserDefaults = suite;
    return platform;
  }()};
};

}  // namespace tarnix
