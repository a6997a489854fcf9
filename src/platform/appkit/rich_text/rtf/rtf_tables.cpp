#include "platform/appkit/rich_text/rtf/rtf_tables.h"

#include <algorithm>
#include <utility>

#include "platform/appkit/rich_text/text/numeral.h"

namespace tarnix {
namespace {

constexpr std::size_t kMostFonts = 4096;
constexpr std::size_t kMostColors = 4096;
constexpr std::size_t kMostLists = 4096;
constexpr std::size_t kLongestTableText = 256;

struct Charset {
  std::int32_t number;
  int codePage;
};
// Of those that are left out, the document's counts.
constexpr Charset kCharsets[] = {{77, 10000}, {78, 932},   {79, 949},   {80, 936},   {81, 950},   {128, 932},
                                 {129, 949},  {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254},
                                 {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257}, {204, 1251}, {222, 874},
                                 {238, 1250}, {254, 437},  {255, 850}};
constexpr std::int32_t kSymbolCharset = 2;

// Of fonts without a charset, which only have places.
bool isNameOfSymbols(std::string_view family) {
  return family == "Symbol" || family.starts_with("Wingdings") || family == "Webdings";
}

}  // namespace

const RtfFont* RtfFonts::find(std::int32_t number) const {
  const auto found = fonts_.find(number);
  return found == fonts_.end() ? nullptr : &found->second;
}

void RtfFonts::begin(std::int32_t number) {
  const bool hasRoom = fonts_.size() < kMostFonts || fonts_.contains(number);
  current_ = hasRoom ? &fonts_[number] : nullptr;
  name_.clear();
  decoded_.clear();
}

void RtfFonts::setCharset(std::int32_t charset) {
  if (current_ == nullptr) return;
  current_->isSymbol = charset == kSymbolCharset;
  const auto* const found = std::find_if(std::begin(kCharsets), std::end(kCharsets),
                                         [charset](const Charset& each) { return each.number == charset; });
  if (found != std::end(kCharsets)) current_->page = CodePage::numbered(found->codePage);
}

void RtfFonts::setCodePage(std::int32_t number) {
  if (current_ == nullptr) return;
  if (auto page = CodePage::numbered(number)) current_->page = std::move(page);
}

void RtfFonts::appendName(std::string_view bytes, const CodePage& documentPage) {
  const std::size_t end = bytes.find(';');
  name_ += bytes.substr(0, std::min(end, kLongestTableText - std::min(kLongestTableText, name_.size())));
  if (end == std::string_view::npos || current_ == nullptr) return;
  decodeName(documentPage);
  const std::string family = std::exchange(decoded_, {});
  const std::size_t start = std::min(family.find_first_not_of(' '), family.size());
  current_->family = String(std::string_view(family).substr(start));
  current_->isSymbol = current_->isSymbol || (!current_->page && isNameOfSymbols(current_->family));
}

void RtfFonts::appendDecodedName(std::string_view utf8, const CodePage& documentPage) {
  if (current_ == nullptr) return;
  decodeName(documentPage);
  if (decoded_.size() < kLongestTableText) decoded_ += utf8;
}

void RtfFonts::decodeName(const CodePage& documentPage) {
  const std::string bytes = std::exchange(name_, {});
  (current_->page ? *current_->page : documentPage).decode(bytes, decoded_);
}

std::optional<TextColor> RtfColors::color(std::int32_t number) const {
  const bool isThere = number >= 0 && static_cast<std::size_t>(number) < colors_.size();
  return isThere ? colors_[static_cast<std::size_t>(number)] : std::nullopt;
}

void RtfColors::set(std::uint8_t TextColor::*part, std::int32_t value) {
  if (!next_) next_.emplace();
  (*next_).*part = static_cast<std::uint8_t>(std::clamp<std::int32_t>(value, 0, 255));
}

void RtfColors::append(std::string_view text) {
  for (const char each : text) {
    if (each != ';' || colors_.size() >= kMostColors) continue;
    colors_.push_back(std::exchange(next_, std::nullopt));
  }
}

void RtfLists::beginList() { current_ = List(); }

void RtfLists::beginLevel() {
  if (current_.levels.size() < current_.numbers.size()) current_.levels.emplace_back();
}

RtfLists::Level* RtfLists::level() { return current_.levels.empty() ? nullptr : &current_.levels.back(); }

void RtfLists::setFormat(std::int32_t format) {
  if (Level* const present = level()) present->format = format;
}

void RtfLists::setStart(std::int32_t start) {
  constexpr std::int32_t kLatestStart = 1'000'000;
  if (Level* const present = level()) present->start = std::clamp<std::int32_t>(start, 0, kLatestStart);
}

void RtfLists::appendLevelText(std::string_view bytes) {
  Level* const present = level();
  if (present != nullptr && present->text.size() + bytes.size() <= kLongestTableText) present->text += bytes;
}

void RtfLists::define(std::int32_t identifier) {
  if (definitions_.size() < kMostLists) definitions_.insert_or_assign(identifier, current_);
}

void RtfLists::setOverride(std::int32_t list) {
  const auto found = definitions_.find(overridden_);
  if (found != definitions_.end() && lists_.size() < kMostLists) lists_.insert_or_assign(list, found->second);
}

std::string RtfLists::nextMarker(std::int32_t list, std::uint8_t level) {
  const auto found = lists_.find(list);
  if (found == lists_.end() || level >= found->second.levels.size()) return {};
  List& known = found->second;
  ++known.numbers[level];
  std::fill(known.numbers.begin() + level + 1, known.numbers.end(), 0);
  std::string marker;
  const std::string& text = known.levels[level].text;
  for (std::size_t i = 1; i < text.size() && text[i] != ';'; ++i) {
    const auto code = static_cast<std::size_t>(static_cast<unsigned char>(text[i]));
    if (code >= known.levels.size()) {
      marker += text[i];
      continue;
    }
    const Level& counted = known.levels[code];
    marker += numeral(counted.start + std::max(known.numbers[code], 1) - 1, counted.format);
  }
  return marker;
}

}  // namespace tarnix
