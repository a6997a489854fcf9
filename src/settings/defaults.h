#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/foundation/string.h"
#include "platform/foundation/user_defaults.h"
#include "settings/serializable.h"

namespace tarnix::Defaults {

using Suite = std::shared_ptr<NSUserDefaults>;

// A setting without its type: a name in a suite. Two keys are equal when both are the same.
class AnyKey_ {
 public:
  AnyKey_(const AnyKey_&) = delete;
  AnyKey_& operator=(const AnyKey_&) = delete;
  virtual ~AnyKey_() = default;

  const String& name() const { return name_; }
  const Suite& suite() const { return suite_; }
  // Removes the stored value; a default shows through again.
  void reset() const { suite_->removeObjectForKey(name_); }

  friend bool operator==(const AnyKey_& a, const AnyKey_& b) {
    return a.name_ == b.name_ && a.suite_ == b.suite_;
  }

 protected:
  AnyKey_(String name, Suite suite) : name_(std::move(name)), suite_(std::move(suite)) {}

 private:
  String name_;
  Suite suite_;
};

// A typed setting. Registers its default with the suite, so that every reader of the suite sees it. Keys are
// shared objects: made once, held by whoever observes them.
template <typename Value>
class Key : public AnyKey_ {
 public:
  Key(String name, Value defaultValue, Suite suite)
      : AnyKey_(std::move(name), std::move(suite)), defaultValue_(std::move(defaultValue)) {
    if (auto object = DefaultsSerializable_<Value>::toSerializable(defaultValue_)) {
      this->suite()->registerDefaults({{this->name(), *std::move(object)}});
    }
  }

  const Value& defaultValue() const { return defaultValue_; }

 private:
  Value defaultValue_;
};

// The stored value, or the default where nothing is stored or what is stored can't be read. What can't be
// read stays in place.
template <typename Value>
Value get(const Key<Value>& key) {
  if (const auto object = key.suite()->objectForKey(key.name())) {
    if (auto value = DefaultsSerializable_<Value>::fromSerializable(*object)) return *std::move(value);
  }
  return key.defaultValue();
}

// Stores the value, also one that equals the default. A value that can't be stored clears the entry.
template <typename Value>
void set(const Key<Value>& key, const Value& value) {
  key.suite()->setObject(DefaultsSerializable_<Value>::toSerializable(value), key.name());
}

}  // namespace tarnix::Defaults
