#include "platform/appkit/rich_text/html/style_sheet.h"

#include <algorithm>
#include <utility>

namespace tarnix::css {
namespace {

constexpr std::size_t kMostRules = 4000;
constexpr std::size_t kMostCompounds = 8;
constexpr std::size_t kMostSteps = 1'000'000;
constexpr std::string_view kNameEnd = ".#";

std::string withoutComments(std::string_view text) {
  std::string kept;
  while (!text.empty()) {
    const std::size_t start = std::min(text.find("/*"), text.size());
    kept += text.substr(0, start);
    text.remove_prefix(start);
    if (text.empty()) break;
    const std::size_t end = text.find("*/", 2);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
  return kept;
}

// The size of a block with its braces, which begins at the front; all of the text where it stays open.
std::size_t blockSize(std::string_view text) {
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '{') ++depth;
    if (text[i] == '}' && --depth == 0) return i + 1;
  }
  return text.size();
}

bool isForScreens(std::string_view rule) {
  const std::string lower = lowercase(rule);
  return lower.starts_with("@media") &&
         (lower.find("screen") != std::string::npos || lower.find("all") != std::string::npos);
}

}  // namespace

void StyleSheet::add(std::string_view text) {
  std::string plain = withoutComments(text);
  for (const std::string_view mark : {"<!--", "-->"}) {
    for (std::size_t at = plain.find(mark); at != std::string::npos; at = plain.find(mark, at))
      plain.replace(at, mark.size(), mark.size(), ' ');
  }
  addRules(plain, 0);
}

void StyleSheet::addRules(std::string_view text, int depth) {
  while (rules_.size() < kMostRules) {
    text = trimmed(text);
    const std::size_t open = text.find('{');
    const std::size_t semicolon = text.starts_with('@') ? text.find(';') : std::string_view::npos;
    if (semicolon < open) {
      text.remove_prefix(semicolon + 1);
      continue;
    }
    if (open == std::string_view::npos) return;
    const std::string_view head = trimmed(text.substr(0, open));
    const std::string_view block = text.substr(open, blockSize(text.substr(open)));
    const std::string_view body =
        block.substr(1, block.size() - (block.ends_with('}') && block.size() > 1 ? 2 : 1));
    text.remove_prefix(open + block.size());
    if (head.starts_with('@')) {
      if (isForScreens(head) && depth < 2) addRules(body, depth + 1);
      continue;
    }
    bodies_.push_back(declarationsIn(body));
    for (std::size_t start = 0; start <= head.size();) {
      const std::size_t end = std::min(head.find(',', start), head.size());
      addSelector(trimmed(head.substr(start, end - start)), bodies_.size() - 1);
      start = end + 1;
    }
  }
}

void StyleSheet::addSelector(std::string_view text, std::size_t body) {
  Rule rule{{}, body, 0};
  std::string spaced;
  for (const char c : text) spaced += c == '>' ? std::string(" > ") : std::string(1, c);
  bool isChild = false;
  for (const std::string_view word : wordsOf(spaced)) {
    if (word == ">") {
      isChild = true;
      continue;
    }
    Compound compound;
    compound.isChild = std::exchange(isChild, false);
    if (rule.selector.size() >= kMostCompounds || !parse(word, compound)) return;
    rule.specificity += (compound.id.empty() ? 0 : 10'000U) +
                        100U * static_cast<std::uint32_t>(compound.classes.size()) +
                        (compound.tag.empty() ? 0 : 1U);
    rule.selector.push_back(std::move(compound));
  }
  if (rule.selector.empty() || rules_.size() >= kMostRules) return;
  const Compound& last = rule.selector.back();
  std::string key = "*";
  if (!last.tag.empty()) key = last.tag;
  if (!last.classes.empty()) key = "." + last.classes.front();
  if (!last.id.empty()) key = "#" + last.id;
  byKey_.emplace(std::move(key), rules_.size());
  rules_.push_back(std::move(rule));
}

bool StyleSheet::parse(std::string_view text, Compound& compound) {
  if (text.find_first_of(":[+~()*") != std::string_view::npos && text != "*") return false;
  const std::size_t tagEnd = std::min(text.find_first_of(kNameEnd), text.size());
  if (text != "*") compound.tag = lowercase(text.substr(0, tagEnd));
  for (text.remove_prefix(tagEnd); !text.empty();) {
    const char kind = text.front();
    text.remove_prefix(1);
    const std::size_t end = std::min(text.find_first_of(kNameEnd), text.size());
    if (end == 0) return false;
    if (kind == '#') compound.id = text.substr(0, end);
    if (kind == '.') compound.classes.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return true;
}

bool StyleSheet::matches(const Compound& compound, const ElementNames& element) {
  const auto hasClass = [&](const std::string& name) {
    return std::find(element.classes.begin(), element.classes.end(), name) != element.classes.end();
  };
  return (compound.tag.empty() || compound.tag == element.tag) &&
         (compound.id.empty() || compound.id == element.id) &&
         std::all_of(compound.classes.begin(), compound.classes.end(), hasClass);
}

bool StyleSheet::matches(const Rule& rule, const ElementNames& element) {
  if (!matches(rule.selector.back(), element)) return false;
  const ElementNames* around = element.parent;
  for (std::size_t i = rule.selector.size() - 1; i > 0; --i) {
    const bool mustBeParent = rule.selector[i].isChild;
    while (around != nullptr && !mustBeParent && !matches(rule.selector[i - 1], *around))
      around = around->parent;
    if (around == nullptr || !matches(rule.selector[i - 1], *around)) return false;
    around = around->parent;
  }
  return true;
}

std::vector<const Declaration*> StyleSheet::declarationsFor(const ElementNames& element) {
  if (steps_ > kMostSteps) return {};
  std::vector<std::size_t> found;
  const auto addFor = [&](const std::string& key) {
    const auto [begin, end] = byKey_.equal_range(key);
    for (auto each = begin; each != end; ++each, ++steps_) {
      if (matches(rules_[each->second], element)) found.push_back(each->second);
    }
  };
  addFor("*");
  addFor(std::string(element.tag));
  if (!element.id.empty()) addFor("#" + std::string(element.id));
  for (const std::string_view name : element.classes) addFor("." + std::string(name));
  std::sort(found.begin(), found.end());
  std::stable_sort(found.begin(), found.end(), [this](std::size_t a, std::size_t b) {
    return rules_[a].specificity < rules_[b].specificity;
  });
  std::vector<const Declaration*> declarations;
  for (const std::size_t rule : found) {
    for (const Declaration& each : bodies_[rules_[rule].body]) declarations.push_back(&each);
  }
  steps_ += declarations.size();
  return declarations;
}

}  // namespace tarnix::css
