#include "settings/bridges/any_serializable.h"

#include <bit>
#include <concepts>
#include <string_view>
#include <type_traits>

namespace tarnix::Defaults {
namespace {

std::size_t combined(std::size_t seed, std::size_t hash) {
  return seed ^ (hash + 0x9e3779b97f4a7c15U + (seed << 6) + (seed >> 2));
}

std::size_t hashOf(const PropertyList& object);

// Numbers are told apart by their width and bits, as their group asks for; both zeros are one.
template <typename Bits>
std::size_t hashOfBits(Bits bits) {
  return combined(sizeof(Bits), std::hash<Bits>{}(bits));
}
std::size_t hashOf(bool value) { return hashOfBits<std::uint8_t>(value ? 1 : 0); }
template <std::integral T>
std::size_t hashOf(T value) {
  return hashOfBits(static_cast<std::make_unsigned_t<T>>(value));
}
std::size_t hashOf(float value) {
  return hashOfBits(std::bit_cast<std::uint32_t>(value == 0 ? 0.0F : value));
}
std::size_t hashOf(double value) {
  return hashOfBits(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value));
}

std::size_t hashOf(const String& value) { return std::hash<String>{}(value); }
std::size_t hashOf(const Date& value) { return std::hash<Date>{}(value); }
std::size_t hashOf(const PropertyList::Data& value) {
  return std::hash<std::string_view>{}({reinterpret_cast<const char*>(value.data()), value.size()});
}

std::size_t hashOf(const PropertyList::Array& items) {
  std::size_t hash = items.size();
  for (const PropertyList& item : items) hash = combined(hash, hashOf(item));
  return hash;
}

std::size_t hashOf(const PropertyList::Dictionary& entries) {
  std::size_t hash = entries.size();
  for (const auto& [key, value] : entries) hash ^= combined(hashOf(key), hashOf(value));
  return hash;
}

std::size_t hashOf(const PropertyList& object) {
  return std::visit([](const auto& value) { return hashOf(value); }, object.value);
}

}  // namespace

AnySerializable AnySerializable::holding(std::optional<PropertyList> object) {
  AnySerializable any;
  any.value_ = std::move(object);
  return any;
}

AnySerializable AnySerializable::array(std::initializer_list<AnySerializable> elements) {
  PropertyList::Array items;
  for (const AnySerializable& each : elements) {
    if (each.value_) items.push_back(*each.value_);
  }
  return holding(PropertyList{std::move(items)});
}

AnySerializable AnySerializable::dictionary(
    std::initializer_list<std::pair<const char*, AnySerializable>> entries) {
  PropertyList::Dictionary values;
  for (const auto& [key, each] : entries) {
    if (each.value_) values.insert_or_assign(key, *each.value_);
  }
  return holding(PropertyList{std::move(values)});
}

}  // namespace tarnix::Defaults

std::size_t std::hash<tarnix::Defaults::AnySerializable>::operator()(
    const tarnix::Defaults::AnySerializable& any) const noexcept {
  return any.value() ? tarnix::Defaults::hashOf(*any.value()) : 0;
}
