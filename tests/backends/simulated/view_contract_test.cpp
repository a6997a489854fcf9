#include "contract/view_contract.h"

#include "backends/simulated/desktop.h"
#include "contract/changing_view.h"

namespace tarnix::simulated {
namespace {

class SimulatedWindowStage final : public test::ViewStage {
 public:
  void show(std::function<View()> view) override {
    shown_.make = std::move(view);
    window_.emplace(View(shown_), desktop_.runLoop());
  }
  void settle() override {
    shown_.change();
    desktop_.advance({});
  }

  bool shows(const std::string& text) override { return window_->shows(text); }
  bool hasButton(const std::string& name) override { return window_->hasButton(name); }
  bool hasToggle(const std::string& name) override { return window_->hasToggle(name); }
  bool press(const std::string& button) override { return window_->press(button); }
  bool flip(const std::string& toggle) override { return window_->flip(toggle); }
  bool isOn(const std::string& toggle) override { return window_->isOn(toggle); }
  std::vector<std::string> focusOrder() override { return window_->focusOrder(); }
  bool search(const std::string& text) override { return window_->search(text); }
  bool pick(std::size_t row) override { return window_->pick(row); }
  std::optional<std::string> dialog() override { return window_->dialog(); }
  bool choose(const std::string& button) override { return window_->choose(button); }
  std::optional<std::vector<std::string>> popoverRows() override { return window_->popoverRows(); }
  void leavePopover() override { window_->leavePopover(); }

  std::vector<Row> rows() override {
    std::vector<Row> rows;
    for (const auto& row : window_->rows())
      rows.push_back({row.title, std::to_string(row.badge), row.isSelected});
    return rows;
  }
  std::optional<std::string> text() override {
    const auto text = window_->detailText();
    return text ? std::optional(text->str()) : std::nullopt;
  }

 private:
  Desktop desktop_;
  test::ChangingView shown_;
  std::optional<Window> window_;
};

using test::ViewContract;
INSTANTIATE_TEST_SUITE_P(Simulated, ViewContract,
                         ::testing::Values([] { return std::make_unique<SimulatedWindowStage>(); }));

}  // namespace
}  // namespace tarnix::simulated
