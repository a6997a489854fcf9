#include "backends/linux/defaults_file.h"

#include <string>
#include <utility>

#include "backends/linux/property_list_reader.h"
#include "backends/linux/property_list_writer.h"

namespace tarnix::linux_desktop {
namespace {

using Dictionary = PropertyList::Dictionary;
using Kind = StorageFailure::Kind;

// One byte more than may be, so that a file which is too long does not look like a whole one.
constexpr std::size_t kReadLimit = kPropertyListSizeLimit + 1;

// Absent when the text holds no dictionary. No text at all stands for an empty one.
std::optional<Dictionary> dictionaryOf(const std::optional<std::string>& xml) {
  if (!xml) return Dictionary();
  const PropertyListReading reading = readXMLPropertyList(*xml);
  const Dictionary* const dictionary = reading.value ? reading.value->as<Dictionary>() : nullptr;
  return dictionary != nullptr ? std::optional(*dictionary) : std::nullopt;
}

void change(Dictionary& dictionary, const String& key, const std::optional<PropertyList>& object) {
  if (object) {
    dictionary.insert_or_assign(key, *object);
  } else {
    dictionary.erase(key);
  }
}

std::optional<StorageFailure> objectionTo(const Dictionary& dictionary) {
  const std::optional<std::string> xml = xmlPropertyList({dictionary});
  if (!xml) return StorageFailure{Kind::unrepresentable};
  if (xml->size() > kPropertyListSizeLimit) return StorageFailure{Kind::tooLarge};
  return std::nullopt;
}

}  // namespace

FileDefaultsStorage::FileDefaultsStorage(std::filesystem::path file, Report report)
    : file_(std::move(file)), report_(std::move(report)) {
  load();
}

FileDefaultsStorage::~FileDefaultsStorage() {
  if (!unsaved_.empty()) save();
}

std::optional<PropertyList> FileDefaultsStorage::object(const String& key) const {
  const auto found = contents_.find(key);
  return found == contents_.end() ? std::nullopt : std::optional(found->second);
}

void FileDefaultsStorage::setObject(const String& key, PropertyList object) {
  contents_.insert_or_assign(key, object);
  unsaved_.insert_or_assign(key, std::move(object));
  save();
}

void FileDefaultsStorage::removeObject(const String& key) {
  contents_.erase(key);
  unsaved_.insert_or_assign(key, std::nullopt);
  save();
}

// A damaged file is looked at again under the lock, should another process have replaced it meanwhile.
void FileDefaultsStorage::load() {
  StorageResult<std::optional<std::string>> xml = readSharedFile(file_, kReadLimit);
  if (!xml) return reportOnce(xml.failure());
  std::optional<Dictionary> dictionary = dictionaryOf(*xml);
  if (!dictionary) {
    StorageResult<SharedFileTurn> turn = SharedFileTurn::begin(file_);
    if (!turn) return reportOnce(turn.failure());
    dictionary = takeStored(*turn);
  }
  contents_ = std::move(dictionary).value_or(Dictionary());
}

void FileDefaultsStorage::save() {
  StorageResult<SharedFileTurn> turn = SharedFileTurn::begin(file_);
  if (!turn) return reportOnce(turn.failure());
  std::optional<Dictionary> stored = takeStored(*turn);
  if (!stored) return;
  const Dictionary before = *stored;
  apply(*stored);
  if (*stored != before) {
    if (const auto failure = turn->replace(*xmlPropertyList({*stored}))) return reportOnce(*failure);
  }
  unsaved_.clear();
  lasting_.reset();
}

// What the file holds. A damaged file is set aside, and everything in memory is to be written again. Absent
// when the file must be left alone.
std::optional<Dictionary> FileDefaultsStorage::takeStored(const SharedFileTurn& turn) {
  StorageResult<std::optional<std::string>> xml = turn.read(kReadLimit);
  if (!xml) return reportOnce(xml.failure()), std::nullopt;
  if (std::optional<Dictionary> dictionary = dictionaryOf(*xml)) return dictionary;
  if (const auto failure = turn.setAside()) return reportOnce(*failure), std::nullopt;
  report({Kind::damaged});
  for (const auto& [key, object] : contents_) unsaved_.try_emplace(key, object);
  return Dictionary();
}

// Makes the unsaved changes one by one, so that one which the file cannot hold keeps no other from being
// saved.
void FileDefaultsStorage::apply(Dictionary& stored) {
  for (const auto& [key, object] : unsaved_) {
    Dictionary changed = stored;
    change(changed, key, object);
    if (const auto objection = objectionTo(changed)) {
      report(*objection);
    } else {
      stored = std::move(changed);
    }
  }
}

void FileDefaultsStorage::report(const StorageFailure& failure) {
  if (report_) report_(failure);
}

void FileDefaultsStorage::reportOnce(const StorageFailure& failure) {
  if (lasting_ == failure) return;
  lasting_ = failure;
  report(failure);
}

}  // namespace tarnix::linux_desktop
