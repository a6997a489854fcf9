#include "backends/linux/files/defaults_file.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "backends/linux/files/file_watch.h"
#include "backends/linux/files/property_list_reader.h"
#include "backends/linux/files/property_list_writer.h"

namespace tarnix::linux_desktop {
namespace {

using Dictionary = PropertyList::Dictionary;
using Kind = StorageFailure::Kind;

// One byte more than may be, so that a file which is too long does not look like a whole one.
constexpr std::size_t kReadLimit = kPropertyListSizeLimit + 1;

// Absent when the text holds no dictionary. No text at all stands for an empty one.
std::optional<Dictionary> dictionaryOf(const std::optional<std::string>& xml) {
  if (!xml) return Dictionary();
  PropertyListReading reading = readXMLPropertyList(*xml);
  Dictionary* const dictionary = reading.value ? std::get_if<Dictionary>(&reading.value->value) : nullptr;
  return dictionary != nullptr ? std::optional(std::move(*dictionary)) : std::nullopt;
}

std::optional<PropertyList> valueIn(const Dictionary& dictionary, const String& key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? std::nullopt : std::optional(found->second);
}

void apply(const String& key, const std::optional<PropertyList>& object, Dictionary& dictionary) {
  if (object) {
    dictionary.insert_or_assign(key, *object);
  } else {
    dictionary.erase(key);
  }
}

template <typename Changes>
Dictionary withChanges(Dictionary dictionary, const Changes& changes) {
  for (const auto& [key, object] : changes) apply(key, object, dictionary);
  return dictionary;
}

StorageResult<std::string> xmlOf(const Dictionary& dictionary) {
  std::optional<std::string> xml = xmlPropertyList({dictionary});
  if (!xml) return StorageFailure{Kind::unrepresentable};
  if (xml->size() > kPropertyListSizeLimit) return StorageFailure{Kind::tooLarge};
  return *std::move(xml);
}

// Whether the file would hold the same for both: a date with and without its fraction, one "not a number" and
// another.
bool areSameWhenStored(const PropertyList& a, const PropertyList& b) {
  return a == b || (xmlPropertyList(a) == xmlPropertyList(b) && xmlPropertyList(a));
}

std::vector<String> keysThatDiffer(const Dictionary& before, const Dictionary& after) {
  std::vector<String> keys;
  for (const auto& [key, object] : before) {
    const auto found = after.find(key);
    if (found == after.end() || !areSameWhenStored(object, found->second)) keys.push_back(key);
  }
  for (const auto& [key, object] : after) {
    if (!before.contains(key)) keys.push_back(key);
  }
  std::ranges::sort(keys);
  return keys;
}

}  // namespace

// What the storage shares with the thread of the loop, which alone sees the watch.
class FileDefaultsStorage::Follower : public std::enable_shared_from_this<FileDefaultsStorage::Follower> {
 public:
  Follower(RunLoop& loop, std::filesystem::path file) : loop_(loop), file_(std::move(file)) {}

  // On the thread of the loop, which is there while it runs this.
  void look() {
    if (!watch_) watch_ = std::make_unique<FileWatch>(loop_, file_, [this] { tell(); });
    tell();
  }

  void setHandler(std::function<void()> handler) {
    const std::lock_guard lock(mutex_);
    handler_ = std::move(handler);
  }

  // On any thread: whether the system refused to watch the file.
  bool isDeaf() const { return isDeaf_; }

 private:
  // Holds the lock, so that only the handler itself can take the handler away while it is under way; should
  // it end the storage and let the loop turn, this stays until it returns.
  void tell() {
    const auto alive = shared_from_this();
    isDeaf_ = !watch_->isWatching();
    const std::lock_guard lock(mutex_);
    if (const std::function<void()> handler = handler_) handler();
  }

  RunLoop& loop_;
  std::filesystem::path file_;
  std::recursive_mutex mutex_;
  std::function<void()> handler_;
  std::unique_ptr<FileWatch> watch_;
  std::atomic<bool> isDeaf_ = false;
};

FileDefaultsStorage::FileDefaultsStorage(std::filesystem::path file, Report report, RunLoop* loop)
    : file_(std::move(file)), report_(std::move(report)) {
  load();
  if (loop == nullptr) return;
  inbox_ = loop->inbox();
  follower_ = std::make_shared<Follower>(*loop, file_);
}

FileDefaultsStorage::~FileDefaultsStorage() {
  if (inbox_) {
    setForeignChangeHandler({});
    inbox_->perform([follower = std::move(follower_)] {});  // Ends where it was started.
  }
  if (!unsaved_.empty()) save();
}

// What changed since the file was read, before it is watched, is found by the first look.
void FileDefaultsStorage::setForeignChangeHandler(std::function<void()> handler) {
  if (!follower_) return;
  const bool isListening = handler != nullptr;
  follower_->setHandler(std::move(handler));
  if (!isListening) return;
  inbox_->perform([weak = std::weak_ptr(follower_)] {
    if (const auto follower = weak.lock()) follower->look();
  });
}

std::optional<PropertyList> FileDefaultsStorage::object(const String& key) const {
  return valueIn(contents_, key);
}

void FileDefaultsStorage::setObject(const String& key, const PropertyList& object) { change(key, object); }

void FileDefaultsStorage::removeObject(const String& key) { change(key, std::nullopt); }

void FileDefaultsStorage::change(const String& key, std::optional<PropertyList> object) {
  apply(key, object, contents_);
  unfit_.erase(key);
  unsaved_.insert_or_assign(key, std::move(object));
  save();
}

std::vector<String> FileDefaultsStorage::takeForeignChanges() {
  const bool isDeaf = follower_ && follower_->isDeaf();
  if (isDeaf && !std::exchange(isDeafnessReported_, true)) report({Kind::unwatched});
  StorageResult<std::optional<std::string>> xml = readSharedFile(file_, kReadLimit);
  if (!xml) {
    reportOnce(xml.error());
    return {};
  }
  if (!understand(std::move(*xml))) {
    reportOnce({Kind::damaged});
    return {};
  }
  if (unsaved_.empty()) lasting_.clear();
  if (!std::exchange(hasNews_, false)) return {};
  const Dictionary present = withChanges(withChanges(stored_, unfit_), unsaved_);
  std::vector<String> keys = keysThatDiffer(contents_, present);
  for (const String& key : keys) apply(key, valueIn(present, key), contents_);
  return keys;
}

// A damaged file is looked at again under the lock, should another process have replaced it meanwhile.
void FileDefaultsStorage::load() {
  StorageResult<std::optional<std::string>> xml = readSharedFile(file_, kReadLimit);
  if (!xml) return reportOnce(xml.error());
  if (!understand(std::move(*xml))) {
    StorageResult<SharedFileTurn> turn = SharedFileTurn::begin(file_);
    if (!turn) return reportOnce(turn.error());
    takeStored(*turn);
  }
  contents_ = stored_;
  hasNews_ = false;
}

void FileDefaultsStorage::save() {
  StorageResult<SharedFileTurn> turn = SharedFileTurn::begin(file_);
  if (!turn) return reportOnce(turn.error());
  if (!takeStored(*turn)) return;
  Dictionary changed = withChanges(stored_, unsaved_);
  StorageResult<std::string> xml = xmlOf(changed);
  if (!xml) {
    setUnfitChangesApart();
    changed = withChanges(stored_, unsaved_);
    xml = xmlOf(changed);
  }
  if (xml && *xml != storedText_) {
    if (const auto failure = turn->replace(*xml)) return reportOnce(*failure);
    storedText_ = std::move(*xml);
    stored_ = std::move(changed);
  }
  unsaved_.clear();
  lasting_.clear();
}

// Looks what the file holds. A damaged file is set aside, and everything in memory is to be written again.
// False when the file must be left alone.
bool FileDefaultsStorage::takeStored(const SharedFileTurn& turn) {
  StorageResult<std::optional<std::string>> xml = turn.read(kReadLimit);
  if (!xml) {
    reportOnce(xml.error());
    return false;
  }
  if (understand(std::move(*xml))) return true;
  if (const auto failure = turn.setAside()) {
    reportOnce(*failure);
    return false;
  }
  reportOnce({Kind::damaged});
  understand(std::nullopt);
  for (const auto& [key, object] : contents_) {
    if (!unfit_.contains(key)) unsaved_.try_emplace(key, object);
  }
  return true;
}

// Reads what the file holds, unless it is what it held at the last look. False when it is damaged.
bool FileDefaultsStorage::understand(std::optional<std::string> xml) {
  if (xml == storedText_) return true;
  std::optional<Dictionary> dictionary = dictionaryOf(xml);
  if (!dictionary) return false;
  storedText_ = std::move(xml);
  stored_ = std::move(*dictionary);
  hasNews_ = true;
  return true;
}

// Tries the unsaved changes one by one, so that one which the file cannot hold keeps no other from being
// saved.
void FileDefaultsStorage::setUnfitChangesApart() {
  Dictionary all = stored_;
  for (auto each = unsaved_.begin(); each != unsaved_.end();) {
    Dictionary changed = all;
    apply(each->first, each->second, changed);
    if (const auto xml = xmlOf(changed)) {
      all = std::move(changed);
      ++each;
    } else {
      report(xml.error());
      unfit_.insert(unsaved_.extract(each++));
    }
  }
}

void FileDefaultsStorage::report(const StorageFailure& failure) {
  if (report_) report_(failure);
}

void FileDefaultsStorage::reportOnce(const StorageFailure& failure) {
  if (std::ranges::find(lasting_, failure) != lasting_.end()) return;
  lasting_.push_back(failure);
  report(failure);
}

}  // namespace tarnix::linux_desktop
