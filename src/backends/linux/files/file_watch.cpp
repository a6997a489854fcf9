#include "backends/linux/files/file_watch.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tarnix::linux_desktop {

using std::filesystem::path;
using Interest = DirectoryWatch::Interest;

FileWatch::FileWatch(RunLoop& loop, const path& file, std::function<void()> changed)
    : loop_(loop), changed_(std::move(changed)) {
  std::error_code error;
  file_ = std::filesystem::absolute(file, error);
  watch();
}

// The directory of the file, else the one in which the way there would go on.
FileWatch::Place FileWatch::placeOf(const path& file) {
  std::error_code error;
  Place place{file.parent_path(), file.filename().string(), Interest::everything};
  while (place.directory.has_relative_path() && !std::filesystem::is_directory(place.directory, error)) {
    place = {place.directory.parent_path(), place.directory.filename().string(), Interest::arrivals};
  }
  return place;
}

// One for each link on the way.
std::vector<FileWatch::Place> FileWatch::places() const {
  constexpr std::size_t kLinkLimit = 40;
  std::vector<Place> places{placeOf(file_)};
  path file = file_;
  while (places.size() < kLinkLimit && places.back().interest == Interest::everything) {
    std::error_code error;
    const path target = std::filesystem::read_symlink(file, error);
    if (error) break;
    file = file.parent_path() / target;  // An absolute target replaces the whole.
    places.push_back(placeOf(file));
  }
  return places;
}

// What appears or goes meanwhile is seen by another round, unless somebody goes on doing so for ever.
void FileWatch::watch() {
  constexpr int kRounds = 20;
  events_.cancel();
  for (int round = 0; round < kRounds; ++round) {
    if (watchPlaces() && places() == watched_) break;
  }
  if (!isWatching()) return;
  events_ = loop_.watchDescriptor(directories_.descriptor(), [this] { look(); });
}

bool FileWatch::watchPlaces() {
  directories_.clear();
  watched_ = places();
  return std::ranges::all_of(
      watched_, [&](const Place& place) { return directories_.add(place.directory, place.interest); });
}

void FileWatch::look() {
  const DirectoryWatch::Changes changes = directories_.takeChanges();
  const bool concernsUs = changes.isIncomplete || std::ranges::any_of(watched_, [&](const Place& place) {
                            return changes.names.contains(place.name);
                          });
  if (!concernsUs) return;
  if (changes.isIncomplete || places() != watched_) watch();
  changed_();
}

}  // namespace tarnix::linux_desktop
