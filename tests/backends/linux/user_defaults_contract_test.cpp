#include "contract/user_defaults_contract.h"

#include "backends/linux/files/defaults_file.h"
#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

class FileStage final : public test::DefaultsStage {
 public:
  std::shared_ptr<NSUserDefaults> start() override {
    return NSUserDefaults::make(std::make_unique<FileDefaultsStorage>(file_));
  }
  PropertyList::Dictionary stored() override { return FileDefaultsStorage(file_).contents(); }

 private:
  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "settings.plist";
};

using test::UserDefaultsContract;
INSTANTIATE_TEST_SUITE_P(File, UserDefaultsContract,
                         ::testing::Values([] { return std::make_unique<FileStage>(); }));

}  // namespace
}  // namespace tarnix::linux_desktop
