#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/linux/applications/desktop_entry.h"
#include "backends/linux/files/directory_watch.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::linux_desktop {

// The installed applications. Nothing is read before the first question; a question about an identifier reads
// one entry, the others read all. Every question first looks whether the directories changed. An entry that
// was handed out stays as it is. Used on one thread.
class DesktopEntries {
 public:
  using Entry = std::shared_ptr<const DesktopEntry>;  // Null when there is none.

  // `directories` as from `applicationDirectories()`: of two entries with the same id, the one in the earlier
  // directory counts. `locales` as from `localeNames()`.
  DesktopEntries(std::vector<std::filesystem::path> directories, std::vector<std::string> locales);
  DesktopEntries(const DesktopEntries&) = delete;
  DesktopEntries& operator=(const DesktopEntries&) = delete;

  // With or without ".desktop" at the end.
  Entry withIdentifier(std::string_view identifier);
  // Only an entry of these directories, by the path it was found at.
  Entry withFile(const std::filesystem::path& file);
  // By StartupWMClass. Of several entries, the first of those in the menus.
  Entry withWindowClass(std::string_view windowClass);
  // All whose command runs the program of this name (`programName`), those in the menus first, then by id.
  std::vector<Entry> withProgram(std::string_view name);

  // Reads at most `count` entries ahead, so that no later question has to read them all. True when all are
  // read.
  bool readAhead(std::size_t count);

 private:
  // Tells whether a file is still what it was.
  struct Stamp {
    std::uint64_t device = 0, number = 0;
    std::int64_t size = 0, changed = 0;  // Bytes; nanoseconds since 1970.
    friend bool operator==(const Stamp&, const Stamp&) = default;
  };
  struct Slot {
    std::filesystem::path file;
    Stamp stamp;
    bool isRead = false;
    Entry entry;
  };
  using Slots = std::map<std::string, Slot, std::less<>>;  // By id without ".desktop".
  using Index = std::multimap<std::string, Entry, std::less<>>;

  static Stamp stampOf(const std::filesystem::path& file);
  void refresh();
  void scan(const std::filesystem::path& directory, const std::string& prefix, int depth);
  void keepWhatIsUnchanged(Slots& former);
  const Entry& read(const std::string& id, Slot& slot);
  void index(const Entry& entry);
  std::vector<Entry> allIn(const Index& index, std::string_view name);

  std::vector<std::filesystem::path> directories_;
  std::vector<std::filesystem::path> missing_;  // Directories that were not there at the last look.
  std::vector<std::string> locales_;
  DirectoryWatch watch_;
  bool isScanned_ = false;
  std::int64_t scanTime_ = 0;  // Nanoseconds since 1970.
  Slots slots_;
  Slots::iterator unread_ = slots_.begin();  // All before it are read.
  Index byWindowClass_;
  Index byProgram_;
};

// Reads all entries ahead, a few in each turn of the loop, for as long as somebody else holds them.
void readAheadInTurns(RunLoop& loop, const std::shared_ptr<DesktopEntries>& entries);

}  // namespace tarnix::linux_desktop
