#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/foundation/defaults/user_defaults.h"
#include "platform/foundation/string.h"
#include "settings/bridges/serializable.h"

namespace tarnix {

// A value that can be empty, and is not stored then: `std::optional`, and what has `defaults_isNil()`.
template <typename T>
concept DefaultsOptionalProtocol_ = requires(const T& value) {
  { value.defaults_isNil() } -> std::convertible_to<bool>;
};

template <typename T>
bool defaults_isNil(const T& value) {
  if constexpr (DefaultsOptionalProtocol_<T>)
    return value.defaults_isNil();
  else if constexpr (internal::ObjectContent<T>::isOptional)
    return !value.has_value();
  else
    return false;
}

namespace Defaults {

using Suite = std::shared_ptr<NSUserDefaults>;

// A setting without its type: a name in a suite, which it holds. Equal when both are the same. Copies stand
// for the same setting. Immutable, so safe to use from any thread.
class AnyKey_ {
 public:
  const String& name() const { return name_; }
  const Suite& suite() const { return suite_; }
  // Removes the stored value; a default shows through again.
  void reset() const { suite_->removeObjectForKey(name_); }

  friend bool operator==(const AnyKey_&, const AnyKey_&) = default;

 protected:
  AnyKey_(String name, Suite suite) : name_(std::move(name)), suite_(std::move(suite)) {}

 private:
  String name_;
  Suite suite_;
};

// A setting with a value of type `T`. Hold each key in one place for the whole run; whatever observes it or
// binds it keeps a copy.
template <typename T>
class Key : public AnyKey_ {
  static_assert(
      IsDefaultsSerializable<T>,
      "A setting can't have this type: it has no bridge. Give it codingKeys(), raw values or secure "
      "coding, or specialise DefaultsSerializable_ for it (see settings/serializable.h).");

 public:
  using Value = T;

  // Registers the default with the suite, so that every reader of the suite sees it for the rest of the run.
  // An empty default, and one that can't be stored, is not registered.
  Key(String name, T defaultValue, Suite suite = NSUserDefaults::standardUserDefaults())
      : AnyKey_(std::move(name), std::move(suite)) {
    if (!defaults_isNil(defaultValue)) {
      if (auto object = toSerializable(defaultValue)) {
        this->suite()->registerDefaults({{this->name(), *std::move(object)}});
      }
    }
    defaultValueGetter_ = std::make_shared<const Getter>([value = std::move(defaultValue)] { return value; });
  }

  // Registers nothing: `defaultValueGetter` is asked at each read that finds nothing.
  Key(String name, Suite suite, std::function<T()> defaultValueGetter)
      : AnyKey_(std::move(name), std::move(suite)),
        defaultValueGetter_(std::make_shared<const Getter>(std::move(defaultValueGetter))) {}

  // The default is empty.
  explicit Key(String name, Suite suite = NSUserDefaults::standardUserDefaults()) requires
      internal::ObjectContent<T>::isOptional : Key(std::move(name), T(), std::move(suite)) {}

  T defaultValue() const { return (*defaultValueGetter_)(); }

 private:
  using Getter = std::function<T()>;
  std::shared_ptr<const Getter> defaultValueGetter_;
};

}  // namespace Defaults
}  // namespace tarnix

template <>
struct std::hash<tarnix::Defaults::AnyKey_> {
  std::size_t operator()(const tarnix::Defaults::AnyKey_& key) const noexcept {
    const std::size_t name = std::hash<tarnix::String>{}(key.name());
    return name * 31 + std::hash<tarnix::Defaults::Suite>{}(key.suite());
  }
};
