#include "backends/x11/text/compound_text.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tarnix::x11 {
namespace {

// An encoding of the C library, for as long as the object lives.
class Converter {
 public:
  explicit Converter(const std::string& charset) : handle_(iconv_open("UTF-8", charset.c_str())) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (isOpen()) iconv_close(handle_);
  }

  // False when the bytes are none of this encoding.
  bool append(std::string bytes, std::string& text) const {
    if (!isOpen()) return false;
    std::string converted(4 * bytes.size() + 4, '\0');
    char* from = bytes.data();
    char* to = converted.data();
    std::size_t left = bytes.size();
    std::size_t room = converted.size();
    if (iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) return false;
    text.append(converted, 0, converted.size() - room);
    return true;
  }

 private:
  bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }
  iconv_t handle_;
};

// A set of characters that an escape sequence puts into the lower or the upper half of the bytes.
struct Designation {
  std::string_view escape;  // Without the escape character.
  bool isUpper;
  const char* charset;  // Of the C library, in which the set is in the upper half; null for ASCII.
};

constexpr std::array kDesignations{
    Designation{"(B", false, nullptr},      Designation{"(J", false, nullptr},
    Designation{")B", true, nullptr},       Designation{"-A", true, "ISO-8859-1"},
    Designation{"-B", true, "ISO-8859-2"},  Designation{"-C", true, "ISO-8859-3"},
    Designation{"-D", true, "ISO-8859-4"},  Designation{"-F", true, "ISO-8859-7"},
    Designation{"-G", true, "ISO-8859-6"},  Designation{"-H", true, "ISO-8859-8"},
    Designation{"-L", true, "ISO-8859-5"},  Designation{"-M", true, "ISO-8859-9"},
    Designation{"-T", true, "TIS-620"},     Designation{"-V", true, "ISO-8859-10"},
    Designation{"-Y", true, "ISO-8859-13"}, Designation{"-_", true, "ISO-8859-14"},
    Designation{"-b", true, "ISO-8859-15"}, Designation{"-f", true, "ISO-8859-16"},
    Designation{")I", true, "SHIFT_JIS"},   Designation{"$(A", false, "EUC-CN"},
    Designation{"$)A", true, "EUC-CN"},     Designation{"$(B", false, "EUC-JP"},
    Designation{"$)B", true, "EUC-JP"},     Designation{"$(C", false, "EUC-KR"},
    Designation{"$)C", true, "EUC-KR"},
};

class Decoder {
 public:
  explicit Decoder(std::string_view bytes) : rest_(bytes) {}

  std::optional<String> decode() {
    while (!rest_.empty()) {
      if (skip("\x9B"
               "1]") ||
          skip("\x9B"
               "2]") ||
          skip("\x9B]"))
        continue;
      const bool isEscape = rest_.front() == '\x1B';
      if (!(isEscape ? takeEscape() : takeRun())) return std::nullopt;
    }
    return String(text_);
  }

 private:
  bool skip(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  bool takeEscape() {
    rest_.remove_prefix(1);
    if (skip("%G")) return takeUtf8();
    if (skip("%@")) return true;
    for (const Designation& each : kDesignations) {
      if (skip(each.escape)) return designate(each);
    }
    return false;
  }

  bool designate(const Designation& designation) {
    (designation.isUpper ? upper_ : lower_) = designation.charset;
    return true;
  }

  bool takeUtf8() {
    const std::size_t end = std::min(rest_.find("\x1B%@"), rest_.size());
    const bool isValid = Converter("UTF-8").append(std::string(rest_.substr(0, end)), text_);
    rest_.remove_prefix(end);
    return isValid;
  }

  // The bytes at the front that belong to one set.
  bool takeRun() {
    const bool isUpper = (static_cast<unsigned char>(rest_.front()) & 0x80) != 0;
    const auto belongs = [&](char byte) {
      return byte != '\x1B' && byte != '\x9B' && ((static_cast<unsigned char>(byte) & 0x80) != 0) == isUpper;
    };
    std::size_t size = 1;
    while (size < rest_.size() && belongs(rest_[size])) ++size;
    std::string run(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return isUpper ? upper_ != nullptr && Converter(upper_).append(std::move(run), text_) : takeLower(run);
  }

  // Controls, such as line ends, stand between the characters of any set.
  bool takeLower(const std::string& run) {
    if (lower_ == nullptr) {
      text_ += run;
      return true;
    }
    std::string characters;
    for (const char byte : run) {
      if (byte > ' ') {
        characters += static_cast<char>(byte | 0x80);
      } else if (!flush(characters)) {
        return false;
      } else {
        text_ += byte;
      }
    }
    return flush(characters);
  }

  bool flush(std::string& characters) {
    return characters.empty() || Converter(lower_).append(std::exchange(characters, {}), text_);
  }

  std::string_view rest_;
  std::string text_;
  const char* lower_ = nullptr;
  const char* upper_ = "ISO-8859-1";
};

}  // namespace

std::optional<String> decodeCompoundText(std::string_view bytes) { return Decoder(bytes).decode(); }

}  // namespace tarnix::x11
