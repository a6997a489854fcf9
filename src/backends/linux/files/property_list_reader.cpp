#include "backends/linux/files/property_list_reader.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backends/linux/files/property_list_text.h"

namespace tarnix::linux_desktop {
namespace {

enum class Element { plist, dictionary, array, key, string, data, date, yes, no, real, integer };

constexpr std::array<std::pair<std::string_view, Element>, 11> kElements = {{
    {"plist", Element::plist},
    {"dict", Element::dictionary},
    {"array", Element::array},
    {"key", Element::key},
    {"string", Element::string},
    {"data", Element::data},
    {"date", Element::date},
    {"true", Element::yes},
    {"false", Element::no},
    {"real", Element::real},
    {"integer", Element::integer},
}};

std::optional<Element> elementOf(std::string_view name) {
  const auto found = std::find_if(kElements.begin(), kElements.end(),
                                  [&](const auto& entry) { return entry.first == name; });
  if (found == kElements.end()) return std::nullopt;
  return found->second;
}

template <typename T>
std::optional<PropertyList> wrapped(std::optional<T> value) {
  if (!value) return std::nullopt;
  return PropertyList{std::move(*value)};
}

std::optional<PropertyList> valueOf(Element element, std::string_view text) {
  switch (element) {
    case Element::string:
      return PropertyList{String(text)};
    case Element::integer:
      return integerFromText(text);
    case Element::real:
      return wrapped(realFromText(text));
    case Element::date:
      return wrapped(dateFromText(text));
    case Element::data:
      return wrapped(dataFromText(text));
    case Element::yes:
    case Element::no:
      if (!text.empty()) return std::nullopt;
      return PropertyList{element == Element::yes};
    default:
      return std::nullopt;
  }
}

bool isContainer(Element element) { return element == Element::dictionary || element == Element::array; }

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

// Takes the events of a parser and assembles the value. Each event answers with a fault, `none` to go on.
class Assembly {
 public:
  using Fault = PropertyListFault;

  Fault start(std::string_view name, const char* const* attributes) {
    const std::optional<Element> element = elementOf(name);
    if (!element || leaf_) return Fault::structure;
    if (*element == Element::plist) return startDocument(attributes);
    if (!isInsideDocument_ || attributes[0] != nullptr || !mayStart(*element)) return Fault::structure;
    return isContainer(*element) ? startContainer(*element) : startLeaf(*element);
  }

  Fault end() {
    if (leaf_) return endLeaf(*std::exchange(leaf_, std::nullopt));
    if (!containers_.empty()) return endContainer();
    isInsideDocument_ = false;
    return root_ ? Fault::none : Fault::structure;
  }

  Fault text(std::string_view text) {
    if (!leaf_) return isBlank(text) ? Fault::none : Fault::structure;
    text_.append(text);
    return Fault::none;
  }

  std::optional<PropertyList> take() { return std::move(root_); }

 private:
  struct Container {
    PropertyList value;
    std::optional<String> key;  // The key that waits for its value.
  };

  Fault startDocument(const char* const* attributes) {
    if (std::exchange(isInsideDocument_, true)) return Fault::structure;
    if (attributes[0] == nullptr) return Fault::none;
    const bool isVersion = attributes[0] == std::string_view("version");
    const bool isKnown = attributes[1] == std::string_view("1.0") && attributes[2] == nullptr;
    return isVersion && isKnown ? Fault::none : Fault::structure;
  }

  // Whether the format has such an element here: one root, keys and values by turns in a dictionary.
  bool mayStart(Element element) const {
    if (containers_.empty()) return element != Element::key && !root_;
    const Container& container = containers_.back();
    if (container.value.as<PropertyList::Array>() != nullptr) return element != Element::key;
    return (element == Element::key) == !container.key;
  }

  Fault startContainer(Element element) {
    if (containers_.size() == kPropertyListDepthLimit) return Fault::tooDeep;
    const bool isArray = element == Element::array;
    containers_.push_back(
        {isArray ? PropertyList{PropertyList::Array()} : PropertyList{PropertyList::Dictionary()}, {}});
    return Fault::none;
  }

  Fault startLeaf(Element element) {
    leaf_ = element;
    text_.clear();
    return Fault::none;
  }

  Fault endLeaf(Element element) {
    if (element == Element::key) return endKey();
    std::optional<PropertyList> value = valueOf(element, text_);
    return value ? add(std::move(*value)) : Fault::value;
  }

  Fault endKey() {
    Container& dictionary = containers_.back();
    dictionary.key = String(text_);
    const auto& entries = *dictionary.value.as<PropertyList::Dictionary>();
    return entries.contains(*dictionary.key) ? Fault::duplicateKey : Fault::none;
  }

  Fault endContainer() {
    if (containers_.back().key) return Fault::structure;
    PropertyList value = std::move(containers_.back().value);
    containers_.pop_back();
    return add(std::move(value));
  }

  Fault add(PropertyList value) {
    if (containers_.empty()) {
      root_ = std::move(value);
    } else if (auto* items = std::get_if<PropertyList::Array>(&containers_.back().value.value)) {
      items->push_back(std::move(value));
    } else {
      auto& entries = std::get<PropertyList::Dictionary>(containers_.back().value.value);
      entries.emplace(*std::exchange(containers_.back().key, std::nullopt), std::move(value));
    }
    return Fault::none;
  }

  bool isInsideDocument_ = false;
  std::optional<PropertyList> root_;
  std::vector<Container> containers_;
  std::optional<Element> leaf_;
  std::string text_;
};

bool isUTF8(const char* encoding) {
  constexpr std::string_view kName = "utf-8";
  const std::string_view given = encoding == nullptr ? kName : encoding;
  return std::equal(given.begin(), given.end(), kName.begin(), kName.end(),
                    [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

// Hands the events of one document to an assembly and stops at the first fault.
class Reading {
 public:
  Reading() : parser_(XML_ParserCreate("UTF-8")) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser_.get(), onText);
    XML_SetXmlDeclHandler(parser_.get(), onDeclaration);
    XML_SetStartDoctypeDeclHandler(parser_.get(), onDocumentType);
    XML_SetSkippedEntityHandler(parser_.get(), onSkippedEntity);
  }

  PropertyListReading read(std::string_view xml) {
    const auto status = XML_Parse(parser_.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    if (status != XML_STATUS_OK && fault_ == PropertyListFault::none)
      fault_ = PropertyListFault::notWellFormed;
    if (fault_ == PropertyListFault::none) return {assembly_.take(), fault_, 0};
    return {std::nullopt, fault_, XML_GetCurrentLineNumber(parser_.get())};
  }

 private:
  struct Free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  void note(PropertyListFault fault) {
    if (fault == PropertyListFault::none || fault_ != PropertyListFault::none) return;
    fault_ = fault;
    XML_StopParser(parser_.get(), XML_FALSE);
  }
  // The parser may still send an event after it was stopped.
  static Reading* live(void* self) {
    auto* reading = static_cast<Reading*>(self);
    return reading->fault_ == PropertyListFault::none ? reading : nullptr;
  }

  static void onStart(void* self, const char* name, const char** attributes) noexcept {
    if (auto* reading = live(self)) reading->note(reading->assembly_.start(name, attributes));
  }
  static void onEnd(void* self, const char*) noexcept {
    if (auto* reading = live(self)) reading->note(reading->assembly_.end());
  }
  static void onText(void* self, const char* text, int size) noexcept {
    auto* reading = live(self);
    if (reading != nullptr) reading->note(reading->assembly_.text({text, static_cast<std::size_t>(size)}));
  }
  static void onDeclaration(void* self, const char*, const char* encoding, int) noexcept {
    if (!isUTF8(encoding)) static_cast<Reading*>(self)->note(PropertyListFault::declaration);
  }
  static void onDocumentType(void* self, const char* name, const char*, const char*,
                             int hasContent) noexcept {
    const bool isKnown = name == std::string_view("plist") && hasContent == 0;
    if (!isKnown) static_cast<Reading*>(self)->note(PropertyListFault::declaration);
  }
  static void onSkippedEntity(void* self, const char*, int) noexcept {
    static_cast<Reading*>(self)->note(PropertyListFault::declaration);
  }

  Assembly assembly_;
  PropertyListFault fault_ = PropertyListFault::none;
  std::unique_ptr<XML_ParserStruct, Free> parser_;
};

}  // namespace

PropertyListReading readXMLPropertyList(std::string_view xml) {
  if (xml.size() > kPropertyListSizeLimit) return {std::nullopt, PropertyListFault::tooLarge, 0};
  return Reading().read(xml);
}

}  // namespace tarnix::linux_desktop
