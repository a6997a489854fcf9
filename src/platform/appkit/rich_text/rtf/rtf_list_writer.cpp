#include "platform/appkit/rich_text/rtf/rtf_list_writer.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/appkit/rich_text/text/numeral.h"
#include "platform/foundation/ascii.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

constexpr std::size_t kMostWrittenLists = 2000;  // \ls goes no further.
constexpr std::size_t kLongestBullet = 64;

std::optional<int> romanNumber(const std::string& letters) {
  if (letters.find_first_not_of("ivxlc") != std::string::npos) return std::nullopt;
  for (int number = 1; number < 300; ++number) {
    if (numeral(number, 2) == letters) return number;
  }
  return std::nullopt;
}

bool isLetter(RtfMarker::Kind kind) {
  return kind == RtfMarker::upperLetter || kind == RtfMarker::lowerLetter;
}
bool isRoman(RtfMarker::Kind kind) { return kind == RtfMarker::upperRoman || kind == RtfMarker::lowerRoman; }

// A number in letters, in one of the two ways. What a letter alone is depends on the items before it, of the
// kind `before`.
std::optional<RtfMarker> inLetters(const std::string& letters, RtfMarker::Kind before) {
  RtfMarker marker;
  const bool isCapital = isAsciiUpper(letters.front());
  std::string lower = letters;
  std::transform(lower.begin(), lower.end(), lower.begin(), asciiLowercase);
  const auto number = romanNumber(lower);
  if (number && (lower.size() > 1 || isRoman(before) || (lower == "i" && !isLetter(before)))) {
    marker.kind = isCapital ? RtfMarker::upperRoman : RtfMarker::lowerRoman;
    marker.number = *number;
    return marker;
  }
  if (lower.size() != 1) return std::nullopt;
  marker.kind = isCapital ? RtfMarker::upperLetter : RtfMarker::lowerLetter;
  marker.number = lower.front() - 'a' + 1;
  return marker;
}

std::optional<RtfMarker> inDigits(std::string_view digits) {
  RtfMarker marker;
  marker.kind = RtfMarker::arabic;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), marker.number);
  if (read.ec != std::errc() || marker.number > 32000) return std::nullopt;
  return marker;
}

// How many units of UTF-16 a text has.
int units(std::string_view utf8) {
  int count = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const CodePoint next = codePointAt(utf8, at);
    count += next.value < 0x10000 ? 1 : 2;
    at += next.length;
  }
  return count;
}

RtfMarker parsed(std::string_view text, RtfMarker::Kind before) {
  RtfMarker bullet;
  bullet.before = text.substr(0, codePointStart(text, std::min(text.size(), kLongestBullet)));
  if (units(bullet.before) > 1) bullet.kind = RtfMarker::literal;
  const auto begin = std::find_if_not(text.begin(), text.end(), [](char c) { return c == '('; });
  const auto isCounting = [](char c) { return isAsciiDigit(c) || isAsciiLower(c) || isAsciiUpper(c); };
  const auto end = std::find_if_not(begin, text.end(), isCounting);
  const auto isPunctuation = [](char c) { return c == '.' || c == ')' || c == ':'; };
  if (begin == end || text.size() > 16 || !std::all_of(end, text.end(), isPunctuation)) return bullet;
  const std::string middle(begin, end);
  auto marker = std::all_of(begin, end, isAsciiDigit) ? inDigits(middle)
                : std::all_of(begin, end, isAsciiLower) || std::all_of(begin, end, isAsciiUpper)
                    ? inLetters(middle, before)
                    : std::nullopt;
  if (!marker) return bullet;
  marker->before.assign(text.begin(), begin);
  marker->after.assign(end, text.end());
  return *marker;
}

}  // namespace

bool rtfHasMarker(std::string_view text, const ParagraphStyle& style) {
  const std::string_view marker = style.listMarker;
  return style.listLevel > 0 && !marker.empty() && text.starts_with(marker) &&
         text.substr(marker.size()).starts_with('\t');
}

RtfListWriter::RtfListWriter(const NSAttributedString& text) {
  std::string_view all = text.string();
  std::size_t begin = 0;
  for (const auto& paragraph : text.paragraphs()) {
    const ParagraphStyle& style = text.styleOf(paragraph);
    const bool isItem = rtfHasMarker(all.substr(begin, paragraph.end - begin), style);
    if (isItem) add(style.listMarker, std::min<std::size_t>(style.listLevel, kLevels) - 1);
    if (style.listLevel == 0) isOpen_ = false;
    numbers_.push_back(isItem ? static_cast<int>(lists_.size()) : 0);
    begin = paragraph.end;
  }
}

bool RtfListWriter::continues(const Level& level, const RtfMarker& marker) {
  if (!level.isUsed) return true;
  const RtfMarker& first = level.first;
  if (marker.kind != first.kind || marker.before != first.before || marker.after != first.after) return false;
  return !marker.isCounted() || marker.number == (level.next == 0 ? first.number : level.next);
}

void RtfListWriter::add(std::string_view text, std::size_t level) {
  const RtfMarker marker = parsed(text, isOpen_ ? lists_.back()[level].first.kind : RtfMarker::bullet);
  if ((!isOpen_ || !continues(lists_.back()[level], marker)) && lists_.size() < kMostWrittenLists)
    lists_.emplace_back();
  isOpen_ = true;
  List& list = lists_.back();
  if (!list[level].isUsed) list[level].first = marker;
  list[level].isUsed = true;
  list[level].next = marker.number + 1;
  for (std::size_t deeper = level + 1; deeper < kLevels; ++deeper) list[deeper].next = 0;
}

void RtfListWriter::writeLevel(const Level& level, int index, RtfOutput& to) {
  const RtfMarker& marker = level.first;
  const bool isCounted = marker.isCounted();
  to.raw("{\\listlevel");
  to.word("levelnfc", marker.kind);
  to.word("levelnfcn", marker.kind);
  to.raw("\\leveljc0\\levelfollow0");
  to.word("levelstartat", marker.number);
  to.raw("{\\leveltext");
  to.byte(units(marker.before) + units(marker.after) + (isCounted ? 1 : 0));
  to.text(marker.before);
  if (isCounted) to.byte(index);
  to.text(marker.after);
  to.raw(";}{\\levelnumbers");
  if (isCounted) to.byte(units(marker.before) + 1);
  to.raw(";}}");
}

void RtfListWriter::write(RtfOutput& to) const {
  if (lists_.empty()) return;
  to.raw("{\\*\\listtable");
  int number = 0;
  for (const List& list : lists_) {
    to.raw("{\\list");
    to.word("listtemplateid", ++number);
    int index = 0;
    for (const Level& level : list) writeLevel(level, index++, to);
    to.word("listid", number);
    to.close();
  }
  to.raw("}\n{\\*\\listoverridetable");
  for (int i = 1; i <= number; ++i) {
    to.raw("{\\listoverride");
    to.word("listid", i);
    to.raw("\\listoverridecount0");
    to.word("ls", i);
    to.close();
  }
  to.raw("}\n");
}

}  // namespace tarnix
