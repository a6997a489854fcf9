#include "contract/pasteboard_contract.h"

#include <chrono>

#include "backends/x11/desktop.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

// A live X server, with the scripted owner as the other program.
class X11Stage final : public test::PasteboardStage, private testing::Desktop {
 public:
  X11Stage() { open(); }

  NSPasteboard& pasteboard() override { return *Desktop::pasteboard; }
  RunLoop& runLoop() override { return loop; }
  void settle() override { Desktop::settle(); }
  bool emptyElsewhere() override { return copyWith({"empty"}); }

  bool copyElsewhere(const Copy& copy) override {
    Command command{"good"};
    const auto add = [&](const char* option, const std::string& value) {
      if (!value.empty()) command.insert(command.end(), {option, value});
    };
    add("--text", copy.text);
    add("--rtf", copy.rtf);
    for (const std::string& file : copy.files) add("--uri", file);
    add("--source", copy.source);
    return copyWith(command);
  }

 private:
  void TestBody() override {}

  bool copyWith(const Command& command) {
    const int count = Desktop::pasteboard->changeCount();
    owner(command);
    return runUntilChange(count);
  }
};

using test::PasteboardContract;
INSTANTIATE_TEST_SUITE_P(X11, PasteboardContract,
                         ::testing::Values([] { return std::make_unique<X11Stage>(); }));

}  // namespace
}  // namespace tarnix::x11
