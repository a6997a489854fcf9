#include "backends/linux/files/file_manager.h"

#include <filesystem>
#include <system_error>

namespace tarnix::linux_desktop {

bool FileManager::removeItemAtURL(const URL& url) {
  const std::filesystem::path path = url.path().str();
  if (!url.isFileURL() || !path.is_absolute()) return false;
  std::error_code error;
  const auto removed = std::filesystem::remove_all(path, error);
  return !error && removed > 0;
}

}  // namespace tarnix::linux_desktop
