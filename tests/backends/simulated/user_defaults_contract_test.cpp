#include "contract/user_defaults_contract.h"

namespace tarnix::simulated {
namespace {

// Keeps the settings of the former process, since memory is all that there is.
class MemoryStage final : public test::DefaultsStage {
 public:
  std::shared_ptr<NSUserDefaults> start() override {
    auto storage = std::make_unique<MemoryDefaultsStorage>();
    for (const auto& [key, object] : stored()) storage->setObject(key, object);
    storage_ = storage.get();
    defaults_ = NSUserDefaults::make(std::move(storage));
    return defaults_;
  }
  PropertyList::Dictionary stored() override {
    return storage_ != nullptr ? storage_->contents() : PropertyList::Dictionary();
  }

 private:
  std::shared_ptr<NSUserDefaults> defaults_;
  MemoryDefaultsStorage* storage_ = nullptr;
};

using test::UserDefaultsContract;
INSTANTIATE_TEST_SUITE_P(Memory, UserDefaultsContract,
                         ::testing::Values([] { return std::make_unique<MemoryStage>(); }));

}  // namespace
}  // namespace tarnix::simulated
