#include "platform/foundation/defaults/user_defaults.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

namespace tarnix {
namespace {

using Options = NSKeyValueObservingOptions;

NSKeyValueChangeDictionary::Value valueOrNull(const std::optional<PropertyList>& object) {
  if (object) return *object;
  return NSNull();
}

}  // namespace

struct NSUserDefaults::Registration {
  std::weak_ptr<NSObject> observer;
  const NSObject* identity;
  unsigned options;
  void* context;
  std::atomic<bool> isActive = true;

  Registration(const std::shared_ptr<NSObject>& observing, unsigned wanted, void* mark)
      : observer(observing), identity(observing.get()), options(wanted), context(mark) {}
};

std::optional<PropertyList> MemoryDefaultsStorage::object(const String& key) const {
  const auto found = contents_.find(key);
  return found == contents_.end() ? std::nullopt : std::optional(found->second);
}

void MemoryDefaultsStorage::setObject(const String& key, const PropertyList& object) {
  contents_.insert_or_assign(key, object);
}

void MemoryDefaultsStorage::removeObject(const String& key) { contents_.erase(key); }

NSUserDefaults::NSUserDefaults(std::unique_ptr<DefaultsStorage> storage) : storage_(std::move(storage)) {
  for (auto& [key, object] : storage_->contents()) entries_[key].stored = std::move(object);
}

// Listens when the object is complete, since changes may come at once and on another thread.
std::shared_ptr<NSUserDefaults> NSUserDefaults::make(std::unique_ptr<DefaultsStorage> storage) {
  std::shared_ptr<NSUserDefaults> defaults(new NSUserDefaults(std::move(storage)));
  defaults->storage_->setForeignChangeHandler([weak = std::weak_ptr(defaults)] {
    if (const auto alive = weak.lock()) alive->takeForeignChanges();
  });
  return defaults;
}

NSUserDefaults::~NSUserDefaults() { storage_->setForeignChangeHandler({}); }

std::optional<PropertyList> NSUserDefaults::objectForKey(const String& key) const {
  const std::lock_guard lock(entriesMutex_);
  const auto found = entries_.find(key);
  return found == entries_.end() ? std::nullopt : found->second.visible();
}

void NSUserDefaults::setObject(std::optional<PropertyList> object, const String& key) {
  if (!object) return removeObjectForKey(key);
  convertToStoredForm(*object);
  change(key, [&](const String& name) {
    storage_->setObject(name, *object);
    return std::move(object);
  });
}

void NSUserDefaults::removeObjectForKey(const String& key) {
  {
    const std::lock_guard lock(entriesMutex_);
    const auto found = entries_.find(key);
    if (found == entries_.end() || !found->second.stored) return;
  }
  change(key, [&](const String& name) {
    storage_->removeObject(name);
    return std::optional<PropertyList>();
  });
}

void NSUserDefaults::registerDefaults(const PropertyList::Dictionary& defaults) {
  const std::lock_guard lock(entriesMutex_);
  for (const auto& [key, object] : defaults) entries_[key].registered = storedForm(object);
}

PropertyList::Dictionary NSUserDefaults::dictionaryRepresentation() const {
  const std::lock_guard lock(entriesMutex_);
  PropertyList::Dictionary all;
  for (const auto& [key, entry] : entries_) {
    if (entry.visible()) all.emplace(key, *entry.visible());
  }
  return all;
}

void NSUserDefaults::addObserver(const std::shared_ptr<NSObject>& observer, const String& keyPath,
                                 unsigned options, void* context) {
  const auto registration = std::make_shared<Registration>(observer, options, context);
  isObserved_ = true;
  NSKeyValueChangeDictionary initial;
  {
    const std::lock_guard lock(entriesMutex_);
    Entry& entry = entries_[keyPath];
    entry.registrations.push_back(registration);
    initial.newValue = valueOrNull(entry.visible());
  }
  if (holds(options, Options::initial)) deliver(*registration, keyPath, initial);
}

void NSUserDefaults::removeObserver(const NSObject& observer, const String& keyPath, void* context) {
  const std::lock_guard lock(entriesMutex_);
  const auto entry = entries_.find(keyPath);
  if (entry == entries_.end()) return;
  Registrations& registrations = entry->second.registrations;
  const auto latest = std::find_if(registrations.rbegin(), registrations.rend(), [&](const auto& each) {
    return each->identity == &observer && each->context == context;
  });
  if (latest == registrations.rend()) return;
  (*latest)->isActive = false;
  registrations.erase(std::next(latest).base());
  if (entry->second.isEmpty()) entries_.erase(entry);
}

// `write` changes the storage and gives the value stored from now on.
template <typename Write>
void NSUserDefaults::change(const String& key, Write write) {
  if (isObserved_) {
    changeObserved(key, write);
  } else {
    changeNow(key, write);
  }
}

// Observers may destroy the settings, and what the key came from.
template <typename Write>
void NSUserDefaults::changeObserved(String key, Write& write) {
  const auto alive = shared_from_this();
  announcePrior(key);
  changeNow(key, write);
}

template <typename Write>
void NSUserDefaults::changeNow(const String& key, Write& write) {
  std::unique_ptr<Delivery> delivery;
  {
    const std::lock_guard storageLock(storageMutex_);
    std::optional<PropertyList> object = write(key);
    const std::lock_guard lock(entriesMutex_);
    Entry& entry = entries_[key];
    if (!entry.registrations.empty()) delivery = prepareDelivery(entry);
    entry.stored = std::move(object);
    if (delivery) delivery->change.newValue = valueOrNull(entry.visible());
    if (entry.isEmpty()) entries_.erase(key);
  }
  if (delivery) deliver(delivery->registrations, key, delivery->change);
}

// Forgets those whose observer is gone.
std::unique_ptr<NSUserDefaults::Delivery> NSUserDefaults::prepareDelivery(Entry& entry) {
  std::erase_if(entry.registrations, [](const auto& each) { return each->observer.expired(); });
  auto delivery = std::make_unique<Delivery>();
  delivery->registrations = entry.registrations;
  delivery->change.oldValue = valueOrNull(entry.visible());
  return delivery;
}

// A value that this process has written meanwhile is what the storage gives by then.
void NSUserDefaults::takeForeignChanges() {
  std::vector<String> keys;
  {
    const std::lock_guard lock(storageMutex_);
    keys = storage_->takeForeignChanges();
  }
  for (const String& key : keys) {
    change(key, [&](const String& name) { return storage_->object(name); });
  }
}

void NSUserDefaults::announcePrior(const String& key) {
  Registrations registrations;
  NSKeyValueChangeDictionary change;
  {
    const std::lock_guard lock(entriesMutex_);
    const auto entry = entries_.find(key);
    if (entry == entries_.end() || entry->second.registrations.empty()) return;
    std::ranges::copy_if(entry->second.registrations, std::back_inserter(registrations),
                         [](const auto& each) { return holds(each->options, Options::prior); });
    change.oldValue = valueOrNull(entry->second.visible());
  }
  change.notificationIsPrior = true;
  deliver(registrations, key, change);
}

void NSUserDefaults::deliver(const Registrations& registrations, String key,
                             const NSKeyValueChangeDictionary& change) {
  const auto alive = shared_from_this();
  for (const auto& registration : registrations) deliver(*registration, key, change);
}

void NSUserDefaults::deliver(const Registration& registration, const String& key,
                             const NSKeyValueChangeDictionary& change) {
  const auto observer = registration.observer.lock();
  if (!observer || !registration.isActive) return;
  NSKeyValueChangeDictionary told = change;
  if (!holds(registration.options, Options::newValue)) told.newValue.reset();
  if (!holds(registration.options, Options::oldValue)) told.oldValue.reset();
  observer->observeValueForKeyPath(key, shared_from_this(), &told, registration.context);
}

}  // namespace tarnix
