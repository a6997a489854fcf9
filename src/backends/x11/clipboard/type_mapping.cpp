#include "backends/x11/clipboard/type_mapping.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "platform/foundation/ut_type.h"
#include "platform/foundation/utf8.h"

namespace tarnix::x11 {
namespace {

using namespace std::string_view_literals;
using PasteboardType = NSPasteboard::PasteboardType;

constexpr std::size_t kMostIdentifiers = 1024;
constexpr std::size_t kMostLists = 64;

// In the order in which a list of types goes from rich to plain.
enum class Rank { file, link, richText, markup, image, document, plainText, data };

struct KnownTarget {
  std::string_view target;
  PasteboardType type;
  Rank rank;
};

const std::unordered_map<std::string_view, KnownTarget>& knownTargets() {
  static const std::array kKnownTargets{
      KnownTarget{"text/uri-list", types::fileURL, Rank::file},
      KnownTarget{"x-special/gnome-copied-files", types::fileURL, Rank::file},
      KnownTarget{"text/x-moz-url", types::url, Rank::link},
      KnownTarget{"_NETSCAPE_URL", types::url, Rank::link},
      KnownTarget{"text/rtf", types::rtf, Rank::richText},
      KnownTarget{"application/rtf", types::rtf, Rank::richText},
      KnownTarget{"text/richtext", types::rtf, Rank::richText},
      KnownTarget{"text/html", {"public.html"}, Rank::markup},
      KnownTarget{"text/html;charset=utf-8", {"public.html"}, Rank::markup},
      KnownTarget{"application/xhtml+xml", {"public.html"}, Rank::markup},
      KnownTarget{"image/png", {"public.png"}, Rank::image},
      KnownTarget{"image/tiff", {"public.tiff"}, Rank::image},
      KnownTarget{"image/jpeg", {"public.jpeg"}, Rank::image},
      KnownTarget{"image/jpg", {"public.jpeg"}, Rank::image},
      KnownTarget{"image/gif", {"com.compuserve.gif"}, Rank::image},
      KnownTarget{"image/bmp", {"com.microsoft.bmp"}, Rank::image},
      KnownTarget{"image/x-bmp", {"com.microsoft.bmp"}, Rank::image},
      KnownTarget{"image/x-MS-bmp", {"com.microsoft.bmp"}, Rank::image},
      KnownTarget{"image/webp", {"org.webmproject.webp"}, Rank::image},
      KnownTarget{"image/svg+xml", {"public.svg-image"}, Rank::image},
      KnownTarget{"image/svg", {"public.svg-image"}, Rank::image},
      KnownTarget{"application/pdf", {"com.adobe.pdf"}, Rank::document},
      KnownTarget{"application/x-pdf", {"com.adobe.pdf"}, Rank::document},
      KnownTarget{"text/plain;charset=utf-8", types::text, Rank::plainText},
      KnownTarget{"text/plain;charset=UTF-8", types::text, Rank::plainText},
      KnownTarget{"UTF8_STRING", types::text, Rank::plainText},
      KnownTarget{"text/plain", types::text, Rank::plainText},
      KnownTarget{"TEXT", types::text, Rank::plainText},
      KnownTarget{"STRING", types::text, Rank::plainText},
      KnownTarget{"COMPOUND_TEXT", types::text, Rank::plainText},
      KnownTarget{"text/plain;charset=utf-16", {"public.utf16-plain-text"}, Rank::plainText},
      KnownTarget{"text/unicode", {"public.utf16-plain-text"}, Rank::plainText},
      KnownTarget{"application/json", {"public.json"}, Rank::data},
      KnownTarget{"text/xml", {"public.xml"}, Rank::data},
      KnownTarget{"application/xml", {"public.xml"}, Rank::data},
      KnownTarget{"text/csv", {"public.comma-separated-values-text"}, Rank::data},
      KnownTarget{"text/tab-separated-values", {"public.utf8-tab-separated-values-text"}, Rank::data},
      KnownTarget{"org.nspasteboard.source", types::source, Rank::data},
  };
  static const auto kByName = [] {
    std::unordered_map<std::string_view, KnownTarget> byName;
    for (const KnownTarget& known : kKnownTargets) byName.emplace(known.target, known);
    return byName;
  }();
  return kByName;
}

// ICCCM, section 2.6.2, and what toolkits added to it: questions and commands, not content.
bool isContent(std::string_view target) {
  constexpr std::array kMeta{"TARGETS"sv,         "MULTIPLE"sv, "TIMESTAMP"sv,
                             "SAVE_TARGETS"sv,    "DELETE"sv,   "INSERT_SELECTION"sv,
                             "INSERT_PROPERTY"sv, "LENGTH"sv,   "INCR"sv};
  return !target.empty() && std::find(kMeta.begin(), kMeta.end(), target) == kMeta.end();
}

bool isFileList(std::string_view target) {
  return target == "text/uri-list" || target == "x-special/gnome-copied-files";
}

// How many bytes at the front can stand in a tag as they are.
std::size_t plainPrefix(std::string_view name) {
  const auto needsEscape = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte >= 0x7F || ":=?%"sv.find(character) != std::string_view::npos;
  };
  return static_cast<std::size_t>(std::find_if(name.begin(), name.end(), needsEscape) - name.begin());
}

void appendEscaped(std::string& text, char character) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(character);
  text += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
}

std::string tagValue(std::string_view name) {
  std::string value;
  const bool keepsHighBytes = isValidUtf8(name);
  const bool isCode = name.size() == 1 && "0123456789ABCDEF"sv.find(name[0]) != std::string_view::npos;
  if (isCode) {
    appendEscaped(value, name[0]);
    return value;
  }
  while (!name.empty()) {
    const std::size_t plain = plainPrefix(name);
    value += name.substr(0, plain);
    name.remove_prefix(plain);
    if (name.empty()) break;
    const bool isHigh = static_cast<unsigned char>(name[0]) >= 0x80;
    if (isHigh && keepsHighBytes) {
      value += name[0];
    } else {
      appendEscaped(value, name[0]);
    }
    name.remove_prefix(1);
  }
  return value;
}

std::string base32(std::string_view bytes) {
  std::string text;
  std::uint32_t pending = 0;
  int bits = 0;
  for (const char character : bytes) {
    pending = pending << 8 | static_cast<unsigned char>(character);
    for (bits += 8; bits >= 5; bits -= 5) text += dynamicTagAlphabet[pending >> (bits - 5) & 31];
  }
  if (bits > 0) text += dynamicTagAlphabet[pending << (5 - bits) & 31];
  return text;
}

// A MIME type with a parameter, which a tag has no room for, reads well as it is.
bool isParameterizedMimeType(std::string_view name) {
  const std::size_t slash = name.find('/');
  const bool isPlain =
      std::all_of(name.begin(), name.end(), [](char each) { return each >= ' ' && each <= '~'; });
  return isPlain && slash != std::string_view::npos && slash > 0 &&
         name.find('=', slash) != std::string_view::npos && name.find('.') > slash;
}

struct Ranked {
  Rank rank;
  PasteboardType type;
};

void addOnce(std::vector<Ranked>& list, Rank rank, const PasteboardType& type) {
  const auto same = [&type](const Ranked& other) { return other.type == type; };
  if (std::none_of(list.begin(), list.end(), same)) list.push_back({rank, type});
}

}  // namespace

String dynamicIdentifier(std::string_view target) {
  return String("dyn.a" + base32("?0=6:4=" + tagValue(target)));
}

TypeMapping::TypeList TypeMapping::typesOf(std::span<const String> targets, const Findings& findings) {
  std::vector<Ranked> ranked;
  for (const String& target : targets) {
    if (!isContent(target)) continue;
    const auto known = knownTargets().find(target.view());
    if (isFileList(target) && findings.areFilesKnown) {
      if (findings.hasPaths) addOnce(ranked, Rank::file, types::fileURL);
      if (findings.hasOtherUris) addOnce(ranked, Rank::link, types::url);
    } else if (known != knownTargets().end()) {
      addOnce(ranked, known->second.rank, known->second.type);
    } else {
      addOnce(ranked, Rank::data, {identifierOf(target)});
    }
  }
  if (findings.hasText) addOnce(ranked, Rank::plainText, types::text);
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const Ranked& a, const Ranked& b) { return a.rank < b.rank; });
  std::vector<PasteboardType> list;
  for (Ranked& entry : ranked) list.push_back(std::move(entry.type));
  if (findings.hasMadeRtf) list.push_back(types::rtf);
  return listOf(std::move(list));
}

TypeMapping::TypeList TypeMapping::listOf(std::vector<PasteboardType> types) {
  const auto found =
      std::find_if(lists_.begin(), lists_.end(), [&types](const TypeList& list) { return *list == types; });
  TypeList list;
  if (found != lists_.end()) {
    list = *found;
    lists_.erase(found);
  } else {
    list = std::make_shared<const std::vector<PasteboardType>>(std::move(types));
    if (lists_.size() == kMostLists) lists_.erase(lists_.begin());
  }
  lists_.push_back(list);
  return list;
}

String TypeMapping::identifierOf(const String& target) {
  if (isParameterizedMimeType(target)) return target;
  if (const auto found = identifiers_.find(target); found != identifiers_.end()) return found->second;
  if (identifiers_.size() == kMostIdentifiers) identifiers_.clear();
  return identifiers_.emplace(target, dynamicIdentifier(target)).first->second;
}

}  // namespace tarnix::x11
