#pragma once

#include <memory>
#include <optional>

#include "platform/combine/publisher.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/string.h"

namespace tarnix {

// Where the values of one suite are kept. Used through `NSUserDefaults` only.
class DefaultsStorage {
 public:
  virtual ~DefaultsStorage() = default;
  virtual std::optional<PropertyList> object(const String& key) const = 0;
  // Takes effect in memory at once, whatever becomes of the write to a lasting place.
  virtual void setObject(const String& key, PropertyList object) = 0;
  virtual void removeObject(const String& key) = 0;
  virtual PropertyList::Dictionary contents() const = 0;
};

// Keeps values for the life of the process.
class MemoryDefaultsStorage final : public DefaultsStorage {
 public:
  std::optional<PropertyList> object(const String& key) const override;
  void setObject(const String& key, PropertyList object) override;
  void removeObject(const String& key) override;
  PropertyList::Dictionary contents() const override;

 private:
  PropertyList::Dictionary contents_;
};

// One suite of settings: stored values in front of registered defaults. Used on the main thread only.
class NSUserDefaults {
 public:
  explicit NSUserDefaults(std::unique_ptr<DefaultsStorage> storage);

  // The process's shared suite, from the installed platform.
  static NSUserDefaults& standardUserDefaults();

  // The stored value, else the registered default, else absent.
  std::optional<PropertyList> objectForKey(const String& key) const;
  // Storing nothing removes the stored value.
  void setObject(std::optional<PropertyList> object, const String& key);
  void removeObjectForKey(const String& key);
  // Adds defaults that are never written to the storage; one of the same key is replaced. Sends nothing.
  void registerDefaults(const PropertyList::Dictionary& defaults);
  PropertyList::Dictionary dictionaryRepresentation() const;

  // Sends the key of every stored value that is set, to an equal one too, or removed, after the change.
  Publisher<String> changes() const { return changes_.publisher(); }

 private:
  std::unique_ptr<DefaultsStorage> storage_;
  PropertyList::Dictionary registered_;
  Subject<String> changes_;
};

}  // namespace tarnix
