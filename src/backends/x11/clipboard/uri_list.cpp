#include "backends/x11/clipboard/uri_list.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace tarnix::x11 {
namespace {

constexpr std::string_view kScheme = "file:";

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char left, unsigned char right) {
    return std::tolower(left) == std::tolower(right);
  });
}

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

// The byte that an escape at the front of `text` stands for; absent when there is none to be decoded.
std::optional<char> escapedByte(std::string_view text) {
  if (text.size() < 3 || text[0] != '%') return std::nullopt;
  const int high = hexDigit(text[1]);
  const int low = hexDigit(text[2]);
  if (high < 0 || low < 0) return std::nullopt;
  const char byte = static_cast<char>(high * 16 + low);
  return byte == '\0' || byte == '/' ? std::nullopt : std::optional(byte);
}

std::string withoutEscapes(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const std::optional<char> byte = escapedByte(text);
    plain += byte.value_or(text.front());
    text.remove_prefix(byte ? 3 : 1);
  }
  return plain;
}

std::string_view withoutBlanks(std::string_view line) {
  const std::size_t last = line.find_last_not_of("\r \t");
  return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

std::optional<String> localPath(std::string_view uri) {
  if (!equalsIgnoringCase(uri.substr(0, kScheme.size()), kScheme)) return std::nullopt;
  uri.remove_prefix(kScheme.size());
  if (uri.starts_with("//")) {
    uri.remove_prefix(2);
    const std::string_view host = uri.substr(0, uri.find('/'));
    if (!host.empty() && !equalsIgnoringCase(host, "localhost")) return std::nullopt;
    uri.remove_prefix(host.size());
  }
  if (!uri.starts_with('/') || uri.find('\0') != std::string_view::npos) return std::nullopt;
  return String(withoutEscapes(uri));
}

void UriListReader::append(std::string_view bytes) {
  for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
    unfinished_ += bytes.substr(0, end);
    takeLine(withoutBlanks(unfinished_));
    unfinished_.clear();
    bytes.remove_prefix(end + 1);
  }
  unfinished_ += bytes;
}

UriList UriListReader::finish() {
  if (unfinished_.ends_with('\0')) unfinished_.pop_back();
  takeLine(withoutBlanks(unfinished_));
  return std::move(list_);
}

void UriListReader::takeLine(std::string_view line) {
  if (std::exchange(isVerbNext_, false)) {
    isIgnored_ = line != "copy" && line != "cut";
    return;
  }
  if (isIgnored_ || line.empty() || line.starts_with('#')) return;
  if (std::optional<String> path = localPath(line)) {
    list_.paths.push_back(std::move(*path));
  } else {
    list_.hasOthers = true;
  }
}

bool isFileListInDisguise(std::string_view text) {
  return text.starts_with("x-special/nautilus-clipboard\n") ||
         text.starts_with("x-special/gnome-copied-files\n");
}

}  // namespace tarnix::x11
