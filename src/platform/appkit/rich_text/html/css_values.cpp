#include "platform/appkit/rich_text/html/css_values.h"
#include "platform/foundation/ascii.h"
#include "platform/foundation/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tarnix::css {
namespace {

constexpr double kPointsPerPixel = 0.75;
constexpr double kRootSize = 12;
constexpr double kMostPoints = 2000;
constexpr std::string_view kBlanks = " \t\r\n\f";

struct Unit {
  std::string_view name;
  double points;
};
constexpr Unit kUnits[] = {{"px", kPointsPerPixel}, {"pt", 1},         {"rem", kRootSize}, {"in", 72},
                           {"cm", 72 / 2.54},       {"mm", 72 / 25.4}, {"pc", 12},         {"q", 72 / 101.6}};

struct Size {
  std::string_view keyword;
  double points;
};
constexpr Size kSizes[] = {{"xx-small", 6.75}, {"x-small", 7.5}, {"small", 9.75},  {"medium", 12},
                           {"large", 13.5},    {"x-large", 18},  {"xx-large", 24}, {"xxx-large", 36}};

// Where a declaration ends, quotes and brackets passed over.
std::size_t endOfDeclaration(std::string_view text) {
  char quote = '\0';
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')') {
      depth = std::max(depth - 1, 0);
    } else if (c == ';' && depth == 0) {
      return i;
    }
  }
  return text.size();
}

std::optional<Declaration> declarationFrom(std::string_view text) {
  constexpr std::string_view kImportant = "!important";
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  Declaration declaration{lowercase(trimmed(text.substr(0, colon))),
                          std::string(trimmed(text.substr(colon + 1)))};
  const std::string lower = lowercase(declaration.value);
  if (lower.ends_with(kImportant)) {
    declaration.isImportant = true;
    declaration.value =
        trimmed(std::string_view(declaration.value).substr(0, lower.size() - kImportant.size()));
  }
  if (declaration.name != "font-family" && declaration.name != "font")
    declaration.value = lowercase(declaration.value);
  return declaration;
}

}  // namespace

std::string lowercase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), asciiLowercase);
  return lower;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::vector<std::string_view> wordsOf(std::string_view value) {
  std::vector<std::string_view> words;
  std::size_t start = 0;
  int depth = 0;
  for (std::size_t i = 0; i <= value.size(); ++i) {
    const char c = i < value.size() ? value[i] : ' ';
    if (c == '(') ++depth;
    if (c == ')') --depth;
    const bool isEnd = i == value.size() || (depth <= 0 && kBlanks.find(c) != std::string_view::npos);
    if (!isEnd) continue;
    if (i > start) words.push_back(value.substr(start, i - start));
    start = i + 1;
  }
  return words;
}

std::vector<Declaration> declarationsIn(std::string_view text) {
  std::vector<Declaration> declarations;
  while (!text.empty()) {
    const std::size_t end = endOfDeclaration(text);
    if (auto declaration = declarationFrom(text.substr(0, end)))
      declarations.push_back(std::move(*declaration));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return declarations;
}

std::optional<double> lengthFrom(std::string_view value, double em) {
  double number = 0;
  if (value.starts_with('+')) value.remove_prefix(1);
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  const std::string_view unit(end, static_cast<std::size_t>(value.data() + value.size() - end));
  const auto bounded = [](double points) { return std::clamp(points, -kMostPoints, kMostPoints); };
  if (unit == "em") return bounded(number * em);
  if (unit == "ex" || unit == "ch") return bounded(number * em / 2);
  if (unit == "%") return bounded(number / 100 * em);
  const auto* const known =
      std::find_if(std::begin(kUnits), std::end(kUnits), [&](const Unit& each) { return each.name == unit; });
  if (known != std::end(kUnits)) return bounded(number * known->points);
  return unit.empty() && number == 0 ? std::optional(0.0) : std::nullopt;
}

std::optional<double> fontSizeFrom(std::string_view value, double parent) {
  constexpr double kStep = 1.2;
  if (value == "smaller") return parent / kStep;
  if (value == "larger") return parent * kStep;
  for (const Size& size : kSizes) {
    if (size.keyword == value) return size.points;
  }
  const auto length = lengthFrom(value, parent);
  return length && *length > 0 ? length : std::nullopt;
}

String familyFrom(std::string_view value) {
  std::string_view first = trimmed(value.substr(0, value.find(',')));
  if (first.size() > 1 && (first.front() == '"' || first.front() == '\''))
    first = trimmed(first.substr(1, first.find(first.front(), 1) - 1));
  const std::string lower = lowercase(first);
  constexpr std::string_view kSystem[] = {"serif",     "sans-serif",    "cursive",      "fantasy",
                                          "system-ui", "-apple-system", "inherit",      "initial",
                                          "unset",     "revert",        "ui-sans-serif"};
  if (std::find(std::begin(kSystem), std::end(kSystem), lower) != std::end(kSystem)) return {};
  return lower == "ui-monospace" ? String("monospace") : String(wellFormedUtf8(first));
}

}  // namespace tarnix::css
