#pragma once

#include <compare>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/combine/publisher.h"
#include "platform/foundation/string.h"

namespace tarnix {

// One item on a pasteboard. Its identity is its equality: two readings of one generation give the same
// objects.
class NSPasteboardItem;

// A pasteboard that programs share. Used on the main thread only; nothing here waits.
class NSPasteboard {
 public:
  // The name of a type of content, usually a uniform type identifier. Compared exactly.
  struct PasteboardType {
    String rawValue;
    auto operator<=>(const PasteboardType&) const = default;
  };
  enum class Name { general, drag, find, font, ruler };

  // What is known of one generation of content; defined by those who observe it.
  struct ContentsInfo;
  class Observable;
  static const PasteboardType& sourceType();

  static std::shared_ptr<NSPasteboard> generalPasteboard();
  static std::shared_ptr<NSPasteboard> pasteboardWithName(Name name);

  virtual ~NSPasteboard() = default;

  // Grows with every change by anyone, this program included.
  virtual int changeCount() const = 0;
  // The items of the current generation, the same objects until the next; absent when the content can't be
  // had.
  virtual std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> pasteboardItems() const = 0;
  // The text of the first item that holds one for `type`; absent when there is none or it could not be had
  // within the limits.
  virtual std::optional<String> stringForType(const PasteboardType& type) const = 0;

  // Calls `settled` once the operations above answer what was copied last: at once where they do so already,
  // else later, once, when its owner has handed it over or is not waited for any longer. Dropping the result
  // calls it off.
  [[nodiscard]] virtual AnyCancellable whenSettled(std::function<void()> settled) const {
    settled();
    return {};
  }

  // Empties the pasteboard, which starts a new generation that this program owns. Gives the new change count.
  virtual int clearContents() = 0;
  // Adds a representation to this program's own generation. False when another program owns the content.
  virtual bool setString(const String& text, const PasteboardType& type) = 0;
};

class NSPasteboardItem {
 public:
  virtual ~NSPasteboardItem() = default;
  // In the order of preference of the program that wrote the item.
  virtual std::vector<NSPasteboard::PasteboardType> types() const = 0;
  // Absent when the item has no text for `type`.
  virtual std::optional<String> stringForType(const NSPasteboard::PasteboardType& type) const = 0;
};

inline const NSPasteboard::PasteboardType NSPasteboardTypeString{"public.utf8-plain-text"};
inline const NSPasteboard::PasteboardType NSPasteboardTypeRTF{"public.rtf"};

}  // namespace tarnix

template <>
struct std::hash<tarnix::NSPasteboard::PasteboardType> {
  std::size_t operator()(const tarnix::NSPasteboard::PasteboardType& type) const noexcept {
    return std::hash<tarnix::String>{}(type.rawValue);
  }
};
