#include "platform/foundation/coding/keyed_archiver.h"

#include <tuple>

#include "platform/foundation/coding/json_coding.h"

namespace tarnix::keyed_archive {
namespace {

constexpr std::string_view kFormat = "tarnix.keyed-archive";
constexpr int kVersion = 1;

// What an archive is as JSON.
struct Archive {
  String format;
  int version = 0;
  String className;
  CodedValue::Object values;

  static constexpr auto codingKeys() {
    return std::tuple{CodingKey{"format", &Archive::format}, CodingKey{"version", &Archive::version},
                      CodingKey{"class", &Archive::className}, CodingKey{"values", &Archive::values}};
  }
};

}  // namespace

std::optional<PropertyList::Data> archived(const String& className, const NSCoder& coder) {
  const auto result = JSONEncoder{JSONEncoder::OutputFormatting::sortedKeys}.encode(
      Archive{kFormat, kVersion, className, coder.values()});
  return result ? std::optional(*result) : std::nullopt;
}

std::optional<NSCoder> unarchived(const String& className, const PropertyList::Data& data) {
  auto archive = JSONDecoder().decode<Archive>(data);
  const bool isReadable = archive && archive->format == kFormat && archive->version == kVersion &&
                          archive->className == className;
  return isReadable ? std::optional(NSCoder(std::move(archive->values))) : std::nullopt;
}

}  // namespace tarnix::keyed_archive
