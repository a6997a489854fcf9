#include "backends/linux/applications/desktop_entries.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <tuple>
#include <utility>

#include "backends/linux/applications/program_name.h"
#include "backends/linux/files/file_descriptor.h"

namespace tarnix::linux_desktop {
namespace {

using std::filesystem::path;

constexpr std::string_view kSuffix = ".desktop";
constexpr int kDepthLimit = 8;  // Directories within directories; ends circles of links.
constexpr std::size_t kCountLimit = 10'000;

std::string_view withoutSuffix(std::string_view name) {
  if (name.ends_with(kSuffix)) name.remove_suffix(kSuffix.size());
  return name;
}

}  // namespace

DesktopEntries::DesktopEntries(std::vector<path> directories, std::vector<std::string> locales)
    : directories_(std::move(directories)), locales_(std::move(locales)) {}

DesktopEntries::Entry DesktopEntries::withIdentifier(std::string_view identifier) {
  refresh();
  // "a.desktop" may also be the whole identifier of the file "a.desktop.desktop".
  auto found = slots_.find(identifier);
  if (found == slots_.end()) found = slots_.find(withoutSuffix(identifier));
  return found == slots_.end() ? nullptr : read(found->first, found->second);
}

DesktopEntries::Entry DesktopEntries::withFile(const path& file) {
  const path wanted = file.lexically_normal();
  for (const path& directory : directories_) {
    const path relative = wanted.lexically_relative(directory.lexically_normal());
    if (relative.empty() || *relative.begin() == "..") continue;
    std::string id(withoutSuffix(relative.string()));
    std::replace(id.begin(), id.end(), '/', '-');
    const Entry entry = withIdentifier(id);
    if (entry && entry->file.lexically_normal() == wanted) return entry;
  }
  return nullptr;
}

DesktopEntries::Entry DesktopEntries::withWindowClass(std::string_view windowClass) {
  const std::vector<Entry> entries = allIn(byWindowClass_, windowClass);
  return entries.empty() ? nullptr : entries.front();
}

std::vector<DesktopEntries::Entry> DesktopEntries::withProgram(std::string_view name) {
  return allIn(byProgram_, name);
}

// In an order that does not depend on what was asked before.
std::vector<DesktopEntries::Entry> DesktopEntries::allIn(const Index& index, std::string_view name) {
  refresh();
  readAhead(slots_.size());
  std::vector<Entry> entries;
  const auto [begin, end] = index.equal_range(name);
  std::for_each(begin, end, [&](const auto& item) { entries.push_back(item.second); });
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return std::tuple(!a->isInMenus, std::string_view(a->id)) <
           std::tuple(!b->isInMenus, std::string_view(b->id));
  });
  return entries;
}

bool DesktopEntries::readAhead(std::size_t count) {
  refresh();
  while (count > 0 && unread_ != slots_.end()) {
    read(unread_->first, unread_->second);
    ++unread_;
    --count;
  }
  return unread_ == slots_.end();
}

// Looks at the directories again when one of them changed or has come into being.
void DesktopEntries::refresh() {
  const auto isThere = [](const path& directory) {
    std::error_code error;
    return std::filesystem::is_directory(directory, error);
  };
  const bool hasChanged = watch_.takeChanges() || std::any_of(missing_.begin(), missing_.end(), isThere);
  if (isScanned_ && !hasChanged) return;
  watch_.clear();
  missing_.clear();
  Slots former = std::exchange(slots_, {});
  for (const path& directory : directories_) {
    if (isThere(directory)) {
      scan(directory, "", 0);
    } else {
      missing_.push_back(directory);
    }
  }
  keepWhatIsUnchanged(former);
  unread_ = slots_.begin();
  isScanned_ = true;
}

// A file that was written shortly before it was looked at may have been written again without a trace in its
// stamp, since the clock of file systems is coarse.
void DesktopEntries::keepWhatIsUnchanged(Slots& former) {
  constexpr std::int64_t kCoarse = 1'000'000'000;
  byWindowClass_.clear();
  byProgram_.clear();
  for (auto& [id, slot] : slots_) {
    const auto known = former.find(id);
    const bool isSame = known != former.end() && known->second.isRead && known->second.file == slot.file &&
                        known->second.stamp == slot.stamp && slot.stamp.changed < scanTime_ - kCoarse;
    if (!isSame) continue;
    slot = std::move(known->second);
    if (slot.entry) index(slot.entry);
  }
  scanTime_ = std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

DesktopEntries::Stamp DesktopEntries::stampOf(const path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return {};
  return {.device = status.st_dev,
          .number = status.st_ino,
          .size = status.st_size,
          .changed = status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

// Watches before it looks, so that what changes meanwhile is seen at the next question.
void DesktopEntries::scan(const path& directory, const std::string& prefix, int depth) {
  watch_.add(directory);
  std::error_code error;
  for (const auto& item : std::filesystem::directory_iterator(directory, error)) {
    const std::string name = item.path().filename().string();
    if (name.ends_with(kSuffix)) {
      if (slots_.size() == kCountLimit) return;
      const std::string id = prefix + std::string(withoutSuffix(name));
      slots_.try_emplace(
          id, Slot{.file = item.path(), .stamp = stampOf(item.path()), .isRead = false, .entry = nullptr});
    } else if (depth < kDepthLimit && item.is_directory(error)) {
      scan(item.path(), prefix + name + "-", depth + 1);
    }
  }
}

const DesktopEntries::Entry& DesktopEntries::read(const std::string& id, Slot& slot) {
  if (std::exchange(slot.isRead, true)) return slot.entry;
  const std::optional<std::string> text = readSmallFile(slot.file.string(), kDesktopEntrySizeLimit);
  std::optional<DesktopEntry> entry = text ? parseDesktopEntry(*text, locales_) : std::nullopt;
  if (!entry || entry->isHidden) return slot.entry;
  entry->id = id;
  entry->file = slot.file;
  slot.entry = std::make_shared<const DesktopEntry>(std::move(*entry));
  index(slot.entry);
  return slot.entry;
}

void DesktopEntries::index(const Entry& entry) {
  if (!entry->windowClass.empty()) byWindowClass_.emplace(entry->windowClass, entry);
  const std::string program = programName(entry->command);
  const std::string tried = baseName(entry->triedProgram);
  if (!program.empty()) byProgram_.emplace(program, entry);
  // An interpreter that is tried for says nothing about the program.
  if (!tried.empty() && tried != program && !isInterpreter(tried)) byProgram_.emplace(tried, entry);
}

void readAheadInTurns(RunLoop& loop, const std::shared_ptr<DesktopEntries>& entries) {
  constexpr auto kPause = std::chrono::milliseconds(10);
  constexpr std::size_t kCount = 8;
  loop.performAfter(kPause, [&loop, weak = std::weak_ptr(entries)] {
    const std::shared_ptr<DesktopEntries> held = weak.lock();
    if (held && !held->readAhead(kCount)) readAheadInTurns(loop, held);
  });
}

}  // namespace tarnix::linux_desktop
