#include "contract/pasteboard_contract.h"

#include <chrono>

#include "backends/simulated/desktop.h"

namespace tarnix::simulated {
namespace {

using namespace std::chrono_literals;

class SimulatedPasteboard final : public test::PasteboardStage {
 public:
  NSPasteboard& pasteboard() override { return desktop_.pasteboard(); }
  RunLoop& runLoop() override { return desktop_.runLoop(); }
  void settle() override { desktop_.advance(1s); }

  bool copyElsewhere(const Copy& copy) override {
    ItemContent first;
    const auto add = [&](const char* type, const std::string& text) {
      if (!text.empty()) first.emplace_back(type, text);
    };
    if (!copy.files.empty()) add("public.file-url", copy.files.front());
    add("public.rtf", copy.rtf);
    add("public.utf8-plain-text", copy.text);
    add("org.nspasteboard.source", copy.source);
    std::vector<ItemContent> items = {first};
    for (std::size_t i = 1; i < copy.files.size(); ++i) items.push_back({{"public.file-url", copy.files[i]}});
    desktop_.app("other").copies(items);
    settle();
    return true;
  }

  bool emptyElsewhere() override {
    desktop_.app("other").emptiesPasteboard();
    return true;
  }

 private:
  Desktop desktop_;
};

using test::PasteboardContract;
INSTANTIATE_TEST_SUITE_P(Simulated, PasteboardContract,
                         ::testing::Values([] { return std::make_unique<SimulatedPasteboard>(); }));

}  // namespace
}  // namespace tarnix::simulated
