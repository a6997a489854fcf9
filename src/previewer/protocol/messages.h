#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What the window and the previewer tell each other. Each message is a frame: its kind, the number of bytes
// that follow, and these; numbers are those of the machine that both run on.
namespace tarnix::previewing {

enum class MessageKind : std::uint32_t {
  open = 1,  // From the window: what to preview, once.
  page,      // From the window: a page of the document.
  refusal,   // The rest are answers. There is no preview, and why.
  image,
  text,
  information,
  document,  // The pages, which can be asked for from now on.
  pageImage,
  folder,  // The entries follow, in as many messages as it takes.
  entries,
};

struct FrameHeader {
  std::uint32_t kind = 0;
  std::uint32_t length = 0;
};
inline constexpr std::size_t kHeaderBytes = sizeof(FrameHeader);

// More than any message of this kind has; 0 for a kind that does not exist.
std::size_t mostBytes(MessageKind kind);

// The channel's end in the previewer, and where it finds bytes that are handed over instead of a path.
inline constexpr int kChannelDescriptor = 3;
inline constexpr int kBytesDescriptor = 4;

inline constexpr std::size_t kMostPathBytes = 64 * 1024;
inline constexpr std::size_t kMostTextBytes = 4 * 1024 * 1024;  // Of the file.
inline constexpr std::uint32_t kMostPixels = 6'000'000;         // Of a picture that is sent.
inline constexpr std::uint32_t kMostPages = 20'000;
inline constexpr std::uint32_t kMostEntries = 50'000;
inline constexpr std::size_t kMostNameBytes = 1024;

// At most so many pixels are wanted; a drawing has `scale` hundredths of a pixel in a point.
struct OpenRequest {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t scale = 100;
  std::string path;  // Empty: the bytes are handed over.
};

struct PageRequest {
  std::uint32_t page = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

enum class Reason : std::uint32_t {
  missing,
  noPermission,
  notAFile,
  linkLoop,
  nameTooLong,
  unreadable,
  tooLarge,  // A picture; its width and height are told.
  tooMuchMemory,
  damaged,
  encrypted,
};
inline constexpr std::uint32_t kReasons = static_cast<std::uint32_t>(Reason::encrypted) + 1;

struct Refusal {
  Reason reason = Reason::unreadable;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// Rows of premultiplied ARGB from the top, 4 bytes a pixel, without gaps.
struct Image {
  std::uint32_t width = 0;  // Of the picture as it is stored.
  std::uint32_t height = 0;
  std::uint32_t pixelWidth = 0;  // As it is sent.
  std::uint32_t pixelHeight = 0;
  std::string_view pixels;
};

struct PageImage {
  std::uint32_t page = 0;
  std::uint32_t pixelWidth = 0;
  std::uint32_t pixelHeight = 0;
  std::string_view pixels;
};

// UTF-8 of the first `shownBytes` of `fileBytes`.
struct Text {
  std::uint64_t shownBytes = 0;
  std::uint64_t fileBytes = 0;
  std::string_view utf8;
};

// Of a file that there is no other preview of. Moments are seconds since 1970.
struct Information {
  std::string kind;  // In words.
  std::string iconName;
  std::string genericIconName;
  std::uint64_t bytes = 0;
  std::optional<std::int64_t> modified;
  std::optional<std::int64_t> created;
};

// The sizes of the first pages, in points.
struct Document {
  std::uint32_t pages = 0;
  std::vector<std::pair<float, float>> sizes;
};

struct Folder {
  std::uint32_t entries = 0;
  bool hasMore = false;
};

struct Entry {
  enum class Kind : std::uint32_t { folder, file, link, other };
  Kind kind = Kind::file;
  bool isHidden = false;
  std::uint64_t bytes = 0;
  std::string name;
};
inline constexpr std::uint32_t kEntryKinds = static_cast<std::uint32_t>(Entry::Kind::other) + 1;

// The payloads. Pictures and texts are written as these heads with the bytes behind them.
std::string payloadOf(const OpenRequest& request);
std::string payloadOf(const PageRequest& request);
std::string payloadOf(const Refusal& refusal);
std::string headOf(const Image& image);
std::string headOf(const PageImage& image);
std::string headOf(const Text& text);
std::string payloadOf(const Information& information);
std::string payloadOf(const Document& document);
std::string payloadOf(const Folder& folder);
std::string payloadOf(const std::vector<Entry>& entries);

// Absent where the payload is not exactly what such a message is made of, or holds what none of them may.
// Views borrow from the payload.
std::optional<OpenRequest> openRequestFrom(std::string_view payload);
std::optional<PageRequest> pageRequestFrom(std::string_view payload);
std::optional<Refusal> refusalFrom(std::string_view payload);
std::optional<Image> imageFrom(std::string_view payload);
std::optional<PageImage> pageImageFrom(std::string_view payload);
std::optional<Text> textFrom(std::string_view payload);
std::optional<Information> informationFrom(std::string_view payload);
std::optional<Document> documentFrom(std::string_view payload);
std::optional<Folder> folderFrom(std::string_view payload);
std::optional<std::vector<Entry>> entriesFrom(std::string_view payload);

}  // namespace tarnix::previewing
