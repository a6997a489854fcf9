#include "platform/foundation/user_defaults.h"

#include <utility>

#include "platform/platform.h"

namespace tarnix {
namespace {

std::optional<PropertyList> valueIn(const PropertyList::Dictionary& dictionary, const String& key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<PropertyList> MemoryDefaultsStorage::object(const String& key) const {
  return valueIn(contents_, key);
}

void MemoryDefaultsStorage::setObject(const String& key, PropertyList object) {
  contents_.insert_or_assign(key, std::move(object));
}

void MemoryDefaultsStorage::removeObject(const String& key) { contents_.erase(key); }

PropertyList::Dictionary MemoryDefaultsStorage::contents() const { return contents_; }

NSUserDefaults::NSUserDefaults(std::unique_ptr<DefaultsStorage> storage) : storage_(std::move(storage)) {}

NSUserDefaults& NSUserDefaults::standardUserDefaults() { return *Platform::installed().standardUserDefaults; }

std::optional<PropertyList> NSUserDefaults::objectForKey(const String& key) const {
  if (auto stored = storage_->object(key)) return stored;
  return valueIn(registered_, key);
}

void NSUserDefaults::setObject(std::optional<PropertyList> object, const String& key) {
  if (!object) return removeObjectForKey(key);
  const String changed = key;  // Observers may destroy what `key` belongs to.
  storage_->setObject(changed, *std::move(object));
  changes_.send(changed);
}

void NSUserDefaults::removeObjectForKey(const String& key) {
  if (!storage_->object(key)) return;
  const String changed = key;
  storage_->removeObject(changed);
  changes_.send(changed);
}

void NSUserDefaults::registerDefaults(const PropertyList::Dictionary& defaults) {
  for (const auto& [key, object] : defaults) registered_.insert_or_assign(key, object);
}

PropertyList::Dictionary NSUserDefaults::dictionaryRepresentation() const {
  PropertyList::Dictionary all = storage_->contents();
  all.insert(registered_.begin(), registered_.end());  // Keeps the stored values.
  return all;
}

}  // namespace tarnix
