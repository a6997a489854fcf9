#pragma once

#include <concepts>
#include <initializer_list>
#include <utility>
#include <vector>

#include "settings/key.h"

namespace tarnix {
namespace Defaults {

// The stored value, or the default where nothing is stored or what is stored can't be read. What can't be
// read stays in place.
template <typename T>
T get(const Key<T>& key) {
  if (const auto object = key.suite()->objectForKey(key.name())) {
    if (auto value = fromSerializable<T>(*object)) return *std::move(value);
  }
  return key.defaultValue();
}

// Stores the value, also one that equals the default. An empty value, and one that can't be stored, clears
// the entry.
template <typename T>
void set(const Key<T>& key, const T& value) {
  if (defaults_isNil(value)) return key.suite()->removeObjectForKey(key.name());
  key.suite()->setObject(toSerializable(value), key.name());
}

// Removes the stored values, in this order.
void reset(const std::vector<AnyKey_>& keys);
template <std::derived_from<AnyKey_>... Keys>
void reset(const Keys&... keys) {
  (keys.reset(), ...);
}
// The same by name.
void reset(std::initializer_list<String> names, const Suite& suite = NSUserDefaults::standardUserDefaults());
void reset(const std::vector<String>& names, const Suite& suite = NSUserDefaults::standardUserDefaults());

// Removes every stored value of the suite.
void removeAll(const Suite& suite = NSUserDefaults::standardUserDefaults());

// Whether observers can address a setting of this name: ASCII without "." that does not begin with "@". Only
// tells; a key may have any name.
bool isValidKeyPath(const String& name);

// One setting as the store's subscript gives it. Lives no longer than the key.
template <typename T>
class Setting {
 public:
  explicit Setting(const Key<T>& key) : key_(key) {}
  Setting(const Setting&) = default;

  T get() const { return Defaults::get(key_); }
  operator T() const { return get(); }
  const Setting& operator=(const T& value) const {
    Defaults::set(key_, value);
    return *this;
  }
  // Writes what the other setting reads.
  const Setting& operator=(const Setting& other) const { return *this = other.get(); }

  // Reads, lets `change` alter the value in place, and writes it, also when `change` throws.
  template <std::invocable<T&> Change>
  void update(Change change) const {
    struct WriteBack {
      const Key<T>& key;
      T value;
      ~WriteBack() { Defaults::set(key, value); }
    };
    WriteBack writeBack{key_, get()};
    change(writeBack.value);
  }
  template <typename Operand>
  const Setting& operator+=(const Operand& operand) const {
    update([&](T& value) { value += operand; });
    return *this;
  }

  template <typename U>
  friend bool operator==(const Setting& setting, const U& value) {
    return setting.get() == value;
  }

 private:
  const Key<T>& key_;
};

// The type of `defaults`.
struct Store {
  template <typename T>
  Setting<T> operator[](const Key<T>& key) const {
    return Setting<T>(key);
  }
};

}  // namespace Defaults

// The settings store: `defaults[key]` reads, `defaults[key] = value` writes, `defaults[key] += 1` changes in
// place. From any thread.
inline constexpr Defaults::Store defaults;

}  // namespace tarnix
