#include "backends/linux/files/property_list_writer.h"

#include <concepts>
#include <string_view>
#include <type_traits>
#include <variant>

#include "backends/linux/files/property_list_reader.h"
#include "backends/linux/files/property_list_text.h"
#include "platform/foundation/markup.h"

namespace tarnix::linux_desktop {
namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kFoot = "</plist>\n";

// Writes one value after another. Each function returns false when the format has no form for its argument.
class Writer {
 public:
  bool write(const PropertyList& list) {
    return std::visit([this](const auto& value) { return write(value); }, list.value);
  }
  std::string take() { return std::move(output_); }

 private:
  bool write(bool value) { return line(value ? "<true/>" : "<false/>"); }
  bool write(std::integral auto value) { return element("integer", std::to_string(value)); }
  bool write(double value) { return element("real", textOf(value)); }
  bool write(const PropertyList::Data& value) { return element("data", textOf(value)); }
  bool write(const String& value) { return isXMLText(value) && element("string", markupEscaped(value)); }
  bool write(Date value) {
    const std::optional<std::string> text = textOf(value);
    return text && element("date", *text);
  }
  bool write(const PropertyList::Array& items) {
    return nested("array", items.empty(), [&] {
      for (const PropertyList& item : items) {
        if (!write(item)) return false;
      }
      return true;
    });
  }
  bool write(const PropertyList::Dictionary& entries) {
    return nested("dict", entries.empty(), [&] {
      for (const auto& [key, value] : entries) {
        if (!isXMLText(key) || !element("key", markupEscaped(key)) || !write(value)) return false;
      }
      return true;
    });
  }

  template <typename Body>
  bool nested(const std::string& name, bool isEmpty, Body body) {
    if (depth_ == kPropertyListDepthLimit) return false;
    if (isEmpty) return line("<" + name + "/>");
    line("<" + name + ">");
    ++depth_;
    const bool isWritten = body();
    --depth_;
    return line("</" + name + ">") && isWritten;
  }
  bool element(const std::string& name, const std::string& text) {
    return line("<" + name + ">" + text + "</" + name + ">");
  }
  bool line(std::string_view text) {
    output_.append(depth_, '\t').append(text).push_back('\n');
    return true;
  }

  std::string output_;
  std::size_t depth_ = 0;
};

}  // namespace

std::optional<std::string> xmlPropertyList(const PropertyList& root) {
  Writer writer;
  if (!writer.write(root)) return std::nullopt;
  return std::string(kHead) + writer.take() + std::string(kFoot);
}

}  // namespace tarnix::linux_desktop
