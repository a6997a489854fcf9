#pragma once

#include <cstddef>
#include <string>

namespace tarnix::test {

// Text of exactly `size` bytes in numbered lines of 64, so that a lost, doubled or moved piece shows. Shared
// by the scripted owner and by those who check what came of its copy.
std::string generatedText(std::size_t size);

}  // namespace tarnix::test
