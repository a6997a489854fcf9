#pragma once

#include <functional>

namespace tarnix::Defaults {

// Runs the block at once. What it writes is stored, but no observation of this module hears of it on this
// thread. Where calls are nested, the end of the inner one ends the silence of the outer one as well.
void withoutPropagation(const std::function<void()>& block);

}  // namespace tarnix::Defaults

namespace tarnix {

// Whether the thread of the caller is in such a block.
bool isPropagationSuppressed();

}  // namespace tarnix
