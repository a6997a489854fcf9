#include "app/memory_return.h"

#include <malloc.h>

namespace tarnix {
namespace {

constexpr int kLargeText = 256 * 1024;

}  // namespace

MemoryReturn::MemoryReturn(const ContentView& view, const ViewGraph& graph, RunLoop& loop)
    : view_(view), loop_(loop), subscription_(graph.evaluations().sink([this](const Void&) { check(); })) {}

void MemoryReturn::configureAllocator() { mallopt(M_MMAP_THRESHOLD, kLargeText); }

void MemoryReturn::check() {
  const std::size_t count = view_.clipboard->size();
  // In a turn of its own, so that what the last drawing still holds has gone by then.
  if (count < lastCount_ / 2) loop_.perform([] { malloc_trim(0); });
  lastCount_ = count;
}

}  // namespace tarnix
