#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/foundation/object.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Where the values of one suite are kept. Used through `NSUserDefaults`, which makes one call at a time.
// Values are in the form of `storedForm`.
class DefaultsStorage {
 public:
  virtual ~DefaultsStorage() = default;
  virtual std::optional<PropertyList> object(const String& key) const = 0;
  virtual PropertyList::Dictionary contents() const = 0;
  // Takes effect in memory at once, whatever becomes of the write to a lasting place.
  virtual void setObject(const String& key, const PropertyList& object) = 0;
  virtual void removeObject(const String& key) = 0;

  // `handler` is called, on a thread of the storage's choice and outside any call of this interface, when
  // another process may have changed something. Empty: no more calls.
  virtual void setForeignChangeHandler(std::function<void()> handler) = 0;
  // Takes in what other processes have changed since the last look, and gives the keys concerned.
  virtual std::vector<String> takeForeignChanges() = 0;
};

// Keeps values for the life of the process.
class MemoryDefaultsStorage final : public DefaultsStorage {
 public:
  std::optional<PropertyList> object(const String& key) const override;
  PropertyList::Dictionary contents() const override { return {contents_.begin(), contents_.end()}; }
  void setObject(const String& key, const PropertyList& object) override;
  void removeObject(const String& key) override;
  void setForeignChangeHandler(std::function<void()>) override {}
  std::vector<String> takeForeignChanges() override { return {}; }

 private:
  std::unordered_map<String, PropertyList> contents_;
};

// One suite of settings: stored values in front of registered defaults. Safe for use from any thread; readers
// never wait for the disk.
//
// Changes are delivered on the thread that makes them, outside all locks, in the order of registration;
// observers may read, write, register and remove. An observer that is removed during a delivery gets nothing
// more, one that is added waits for the next change. Changes of another process arrive on the thread of the
// storage.
class NSUserDefaults final : public NSObject {
 public:
  static std::shared_ptr<NSUserDefaults> make(std::unique_ptr<DefaultsStorage> storage);
  ~NSUserDefaults() override;

  // The process's shared suite, from the installed platform.
  static const std::shared_ptr<NSUserDefaults>& standardUserDefaults();
  // The suite of this name from the installed platform; empty for a name that `DefaultsSuites` refuses.
  static std::shared_ptr<NSUserDefaults> initWithSuiteName(const String& name);

  // The stored value, else the registered default, else absent.
  std::optional<PropertyList> objectForKey(const String& key) const;
  // Keeps the stored form of the object. Storing nothing removes the stored value.
  void setObject(std::optional<PropertyList> object, const String& key);
  void removeObjectForKey(const String& key);
  // Adds defaults that are never written to the storage; one of the same key is replaced. Tells nobody.
  void registerDefaults(const PropertyList::Dictionary& defaults);
  // All that can be read, registered defaults included.
  PropertyList::Dictionary dictionaryRepresentation() const;

  // Tells `observer`, which is held weakly, of every set, to an equal value too, and of every removal of a
  // stored value. `options` adds up `NSKeyValueObservingOptions`.
  void addObserver(const std::shared_ptr<NSObject>& observer, const String& keyPath, unsigned options,
                   void* context);
  // Ends the latest registration of the same observer, key path and context, if there is one.
  void removeObserver(const NSObject& observer, const String& keyPath, void* context);

 private:
  explicit NSUserDefaults(std::unique_ptr<DefaultsStorage> storage);

  struct Registration;
  using Registrations = std::vector<std::shared_ptr<Registration>>;
  // Everything that is known about one key.
  struct Entry {
    std::optional<PropertyList> stored;
    std::optional<PropertyList> registered;
    Registrations registrations;

    const std::optional<PropertyList>& visible() const { return stored ? stored : registered; }
    bool isEmpty() const { return !stored && !registered && registrations.empty(); }
  };
  // A change and whom to tell of it. Made only where there is somebody, so that other writes stay cheap.
  struct Delivery {
    Registrations registrations;
    NSKeyValueChangeDictionary change;
  };

  template <typename Write>
  void change(const String& key, Write write);
  template <typename Write>
  void changeObserved(String key, Write& write);
  template <typename Write>
  void changeNow(const String& key, Write& write);
  void takeForeignChanges();
  static std::unique_ptr<Delivery> prepareDelivery(Entry& entry);
  void announcePrior(const String& key);
  void deliver(const Registrations& registrations, String key, const NSKeyValueChangeDictionary& change);
  void deliver(const Registration& registration, const String& key, const NSKeyValueChangeDictionary& change);

  // Held while the storage is used and, within that, `entriesMutex_` for each look at the entries.
  std::mutex storageMutex_;
  std::unique_ptr<DefaultsStorage> storage_;
  mutable std::mutex entriesMutex_;
  std::unordered_map<String, Entry> entries_;
  std::atomic<bool> isObserved_ = false;  // True once anybody has registered.
};

}  // namespace tarnix
