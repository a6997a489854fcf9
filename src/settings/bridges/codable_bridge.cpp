#include "settings/bridges/codable_bridge.h"

#include <iostream>

namespace tarnix::internal {

void printEncodingFailure(const String& description) { std::cout << description.view() << std::endl; }

}  // namespace tarnix::internal
