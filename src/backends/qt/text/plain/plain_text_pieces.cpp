#include "backends/qt/text/plain/plain_text_pieces.h"

#include <algorithm>
#include <cstring>

#include "backends/qt/text/plain/plain_text_decoding.h"

namespace tarnix::qt {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
// How far before its multiple a cut may be, in search of a better place.
constexpr std::size_t kCutWindow = 256;
constexpr std::size_t kScanBytes = 64 * 1024;

std::size_t firstOf(std::string_view text, char wanted, std::size_t from, std::size_t to) {
  if (from >= to) return kNone;
  const void* found = std::memchr(text.data() + from, wanted, to - from);
  return found == nullptr ? kNone : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

std::size_t lastOf(std::string_view text, char wanted, std::size_t from, std::size_t to) {
  if (from >= to) return kNone;
  const void* found = ::memrchr(text.data() + from, wanted, to - from);
  return found == nullptr ? kNone : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

// First break byte within [from, to).
std::size_t breakAfter(std::string_view text, std::size_t from, std::size_t to) {
  const std::size_t feed = firstOf(text, '\n', from, std::min(to, text.size()));
  return std::min(feed, firstOf(text, '\r', from, std::min({feed, to, text.size()})));
}

std::size_t behindBreak(std::string_view text, std::size_t position) {
  const bool isPair = text.substr(position, 2) == "\r\n";
  return position + (isPair ? 2 : 1);
}

// Start of the last line that begins within (from, offset]; a pair of CR and LF is one break.
std::size_t lineStartBefore(std::string_view text, std::size_t offset, std::size_t from) {
  const std::size_t feed = lastOf(text, '\n', from, offset);
  std::size_t returned = lastOf(text, '\r', feed == kNone ? from : feed, offset);
  const bool isPair = returned != kNone && returned + 1 == offset && text.substr(offset, 1) == "\n";
  if (isPair) returned = lastOf(text, '\r', feed == kNone ? from : feed, returned);
  const std::size_t last = returned == kNone ? feed : returned;
  return last == kNone ? kNone : last + 1;
}

bool isCut(std::string_view text, std::size_t multiple) {
  if (multiple < kPieceBytes || multiple + kPieceBytes > text.size()) return false;
  return breakAfter(text, multiple - kPieceBytes, multiple + kPieceBytes) == kNone;
}

bool startsCluster(std::string_view text, std::size_t offset) {
  return !continuesCluster(codePointAt(text, offset).value);
}

bool isBehindSpace(std::string_view text, std::size_t offset) {
  return (text[offset - 1] == ' ' || text[offset - 1] == '\t') && startsCluster(text, offset);
}

std::size_t clusterStartBefore(std::string_view text, std::size_t multiple) {
  const std::size_t nearest = codePointStart(text, multiple);
  std::size_t start = nearest;
  while (!startsCluster(text, start)) {
    start = codePointStart(text, start - 1);
    if (start + kCutWindow < multiple) return nearest;
  }
  return start;
}

// Where the line is cut for this multiple: behind a space or at least between two clusters, if one is near.
std::size_t cutNear(std::string_view text, std::size_t multiple) {
  for (std::size_t place = multiple; place + kCutWindow > multiple; --place) {
    if (isBehindSpace(text, place)) return place;
  }
  return clusterStartBefore(text, multiple);
}

std::size_t cutBefore(std::string_view text, std::size_t offset, std::size_t lineStart) {
  std::size_t multiple = (offset + 2 * kCutWindow) / kPieceBytes * kPieceBytes;
  for (; multiple > lineStart && multiple > 0; multiple -= kPieceBytes) {
    if (!isCut(text, multiple)) continue;
    const std::size_t cut = cutNear(text, multiple);
    if (cut <= offset) return cut;
  }
  return lineStart;
}

std::size_t cutAfter(std::string_view text, std::size_t begin, std::size_t to) {
  std::size_t multiple = begin / kPieceBytes * kPieceBytes + kPieceBytes;
  for (; multiple < to; multiple += kPieceBytes) {
    const std::size_t cut = isCut(text, multiple) ? cutNear(text, multiple) : begin;
    if (cut > begin) return cut;
  }
  return kNone;
}

std::size_t pieceBegin(std::string_view text, std::size_t offset) {
  // A line that reaches further back than this has a cut on the way.
  const std::size_t reach = std::min(offset, 4 * kPieceBytes);
  const std::size_t lineStart = lineStartBefore(text, offset, offset - reach);
  return cutBefore(text, offset, lineStart == kNone ? offset - reach : lineStart);
}

}  // namespace

TextPiece pieceAt(std::string_view text, std::size_t offset) {
  const std::size_t begin = pieceBegin(text, std::min(offset, text.size()));
  const std::size_t reach = std::min(text.size(), begin + 4 * kPieceBytes);
  const std::size_t lineBreak = breakAfter(text, begin, reach);
  const std::size_t cut = cutAfter(text, begin, std::min(lineBreak, reach));
  if (cut != kNone) return {begin, cut, cut};
  if (lineBreak == kNone) return {begin, text.size(), text.size() + 1};
  return {begin, lineBreak, behindBreak(text, lineBreak)};
}

TextRange lineAround(std::string_view text, std::size_t offset) {
  std::size_t begin = std::min(offset, text.size());
  std::size_t found = kNone;
  for (; begin > 0 && found == kNone; begin -= std::min(begin, kScanBytes)) {
    found = lineStartBefore(text, begin, begin - std::min(begin, kScanBytes));
  }
  std::size_t end = std::min(offset, text.size());
  std::size_t lineBreak = kNone;
  for (; end < text.size() && lineBreak == kNone; end += kScanBytes) {
    lineBreak = breakAfter(text, end, end + kScanBytes);
  }
  return {found == kNone ? 0 : found, lineBreak == kNone ? text.size() : behindBreak(text, lineBreak)};
}

}  // namespace tarnix::qt
