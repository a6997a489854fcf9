#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/appkit/pasteboard.h"

namespace tarnix::x11 {

namespace types {
inline const NSPasteboard::PasteboardType text = NSPasteboardTypeString;
inline const NSPasteboard::PasteboardType rtf = NSPasteboardTypeRTF;
inline const NSPasteboard::PasteboardType fileURL{"public.file-url"};
inline const NSPasteboard::PasteboardType url{"public.url"};
inline const NSPasteboard::PasteboardType source{"org.nspasteboard.source"};
}  // namespace types

// The dynamic type identifier that carries the name of a target which has no uniform type identifier, as the
// tag of a pasteboard type: base 32 of "?0=6:4=<name>". What the reader of such a tag would take for its
// syntax (":",
// "=", "?", one-letter codes), control characters, bytes beyond ASCII that are no UTF-8, and "%" itself are
// written "%XX" within the name.
String dynamicIdentifier(std::string_view target);

// What the targets are called as pasteboard types.
class TypeMapping {
 public:
  using TypeList = std::shared_ptr<const std::vector<NSPasteboard::PasteboardType>>;

  // What turned out to be there, whatever it was offered as.
  struct Findings {
    bool areFilesKnown = false;  // The list of files was to be had.
    bool hasPaths = false;
    bool hasOtherUris = false;
    bool hasText = false;
    bool hasMadeRtf = false;  // There is RTF, which the owner does not offer.
  };

  // Each type once: files, links, RTF, HTML, images, PDF, plain text, then everything else as offered, and
  // last RTF that was made of something else. Targets that are no content (TARGETS, DELETE and the like) are
  // left out. Equal lists are the same list.
  TypeList typesOf(std::span<const String> targets, const Findings& findings);
  // A list of these very types.
  TypeList listOf(std::vector<NSPasteboard::PasteboardType> types);

 private:
  String identifierOf(const String& target);

  std::unordered_map<String, String> identifiers_;
  std::vector<TypeList> lists_;  // The most recent last.
};

}  // namespace tarnix::x11
