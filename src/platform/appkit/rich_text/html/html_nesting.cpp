#include "platform/appkit/rich_text/html/html_nesting.h"
#include "platform/foundation/ascii.h"

#include <algorithm>
#include <initializer_list>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarnix {
namespace {

constexpr std::size_t kMostOpenElements = 300;
constexpr std::size_t kMostAttributes = 64;
constexpr std::size_t kMostFormatting = 100;
constexpr std::size_t kMostLeaked = 3;
constexpr std::size_t kLongestTagName = 32;

using Names = std::unordered_set<std::string_view>;

const Names kVoid = {"area",  "base", "br",   "col",   "embed",  "hr",    "img",
                     "input", "link", "meta", "param", "source", "track", "wbr"};
const Names kRaw = {"script", "style", "textarea", "title", "xmp", "iframe", "noembed", "noframes"};
const Names kFormatting = {"a",    "b", "big",   "code",   "em",     "font", "i",
                           "nobr", "s", "small", "strike", "strong", "tt",   "u"};
const Names kClosesParagraph = {
    "address", "article", "aside", "blockquote", "center", "div", "dl",     "fieldset", "footer", "form",
    "h1",      "h2",      "h3",    "h4",         "h5",     "h6",  "header", "hr",       "main",   "nav",
    "ol",      "p",       "pre",   "section",    "table",  "ul",  "li",     "dt",       "dd"};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '/'; }

class Filter {
 public:
  explicit Filter(std::string_view html) : html_(html) { kept_.reserve(html.size()); }

  std::string run() {
    while (at_ < html_.size()) {
      const std::size_t tag = std::min(html_.find('<', at_), html_.size());
      kept_ += html_.substr(at_, tag - at_);
      at_ = tag;
      if (at_ < html_.size()) readMarkup();
    }
    return std::move(kept_);
  }

 private:
  void readMarkup() {
    const std::string_view rest = html_.substr(at_);
    if (rest.starts_with("<!--")) return keepTo("-->");
    if (rest.size() > 1 && isAsciiLetter(rest[1])) return readStart();
    if (rest.size() > 2 && rest[1] == '/' && isAsciiLetter(rest[2])) return readEnd();
    if (rest.size() > 1 && (rest[1] == '!' || rest[1] == '?' || rest[1] == '/')) return keepTo(">");
    kept_ += '<';
    ++at_;
  }

  void keepTo(std::string_view end) {
    const std::size_t found = html_.find(end, at_ + 2);
    const std::size_t stop = found == std::string_view::npos ? html_.size() : found + end.size();
    kept_ += html_.substr(at_, stop - at_);
    at_ = stop;
  }

  std::string takeName() {
    std::string name;
    while (at_ < html_.size() && !isBlank(html_[at_]) && html_[at_] != '>') {
      const char c = html_[at_++];
      if (name.size() < kLongestTagName) name += asciiLowercase(c);
    }
    return name;
  }

  // Goes behind the tag; gives where the attributes end that are kept.
  std::size_t skipAttributes() {
    std::size_t count = 0;
    std::size_t keptEnd = at_;
    while (at_ < html_.size() && html_[at_] != '>') {
      if (isBlank(html_[at_])) {
        ++at_;
        continue;
      }
      skipAttribute();
      if (++count <= kMostAttributes) keptEnd = at_;
    }
    if (at_ < html_.size()) ++at_;
    return keptEnd;
  }

  void skipAttribute() {
    while (at_ < html_.size() && !isBlank(html_[at_]) && html_[at_] != '>' && html_[at_] != '=') ++at_;
    std::size_t value = at_;
    while (value < html_.size() && isBlank(html_[value]) && html_[value] != '/') ++value;
    if (value >= html_.size() || html_[value] != '=') {
      // A name of nothing is the character itself.
      if (at_ < html_.size() && html_[at_] == '=') ++at_;
      return;
    }
    ++value;
    while (value < html_.size() && isBlank(html_[value]) && html_[value] != '/') ++value;
    at_ = value;
    if (at_ >= html_.size()) return;
    if (const char quote = html_[at_]; quote == '"' || quote == '\'') {
      const std::size_t end = html_.find(quote, at_ + 1);
      at_ = end == std::string_view::npos ? html_.size() : end + 1;
      return;
    }
    while (at_ < html_.size() && html_[at_] != '>' && !(isBlank(html_[at_]) && html_[at_] != '/')) ++at_;
  }

  void readStart() {
    const std::size_t start = at_++;
    const std::string name = takeName();
    const std::size_t keptEnd = skipAttributes();
    if (mayOpen(name)) {
      kept_ += html_.substr(start, keptEnd - start);
      kept_ += '>';
    }
    if (kRaw.contains(name)) keepRaw(name);
  }

  // Up to the end tag, which is read as any other.
  void keepRaw(const std::string& name) {
    const auto isEnd = [&](std::size_t at) {
      const std::string_view rest = html_.substr(at + 2, name.size());
      return std::equal(rest.begin(), rest.end(), name.begin(), name.end(),
                        [](char a, char b) { return (a | 0x20) == b; });
    };
    std::size_t end = html_.find("</", at_);
    while (end != std::string_view::npos && !isEnd(end)) end = html_.find("</", end + 2);
    end = std::min(end, html_.size());
    kept_ += html_.substr(at_, end - at_);
    at_ = end;
  }

  bool mayOpen(const std::string& name) {
    closeImplied(name);
    if (kVoid.contains(name)) return true;
    const bool isFormatting = kFormatting.contains(name);
    if (open_.size() >= kMostOpenElements || (isFormatting && formatting_ >= kMostFormatting)) {
      ++dropped_[name];
      return false;
    }
    if (isFormatting) ++formatting_;
    if (name == "p") ++paragraphs_;
    open_.push_back(name);
    return true;
  }

  void readEnd() {
    const std::size_t start = at_;
    at_ += 2;
    const std::string name = takeName();
    skipAttributes();
    if (auto& dropped = dropped_[name]; dropped > 0) {
      --dropped;
      return;
    }
    const auto found = std::find(open_.rbegin(), open_.rend(), name);
    if (found != open_.rend()) {
      closeDownTo(static_cast<std::size_t>(std::distance(found, open_.rend())) - 1, name);
    } else if (kFormatting.contains(name) && leaked_ > 0) {
      --leaked_;
    }
    kept_ += html_.substr(start, std::min<std::size_t>(name.size() + 2, at_ - start));
    kept_ += '>';
  }

  void closeImplied(const std::string& name) {
    if (paragraphs_ > 0 && kClosesParagraph.contains(name)) closeLast({"p"}, {"table", "td", "th", "button"});
    if (name == "li") closeLast({"li"}, {"ul", "ol", "table"});
    if (name == "dt" || name == "dd") closeLast({"dt", "dd"}, {"dl", "table"});
    if (name == "td" || name == "th") closeLast({"td", "th"}, {"tr", "table"});
    if (name == "tr") closeLast({"tr"}, {"table"});
    if (name == "tbody" || name == "thead" || name == "tfoot")
      closeLast({"tbody", "thead", "tfoot"}, {"table"});
    if (name == "option") closeLast({"option"}, {"select"});
  }

  // A parser opens formatting that was left open within a block again in each block that follows, which only
  // a few of them may ask for: the others are closed.
  void closeDownTo(std::size_t size, std::string_view closed) {
    const std::string own(closed);
    while (open_.size() > size) {
      const std::string name = std::move(open_.back());
      open_.pop_back();
      if (name == "p") --paragraphs_;
      if (!kFormatting.contains(name)) continue;
      --formatting_;
      const bool isClosedItself = open_.size() == size && name == own;
      if (isClosedItself) continue;
      if (leaked_ < kMostLeaked) {
        ++leaked_;
      } else {
        kept_ += "</" + name + ">";
      }
    }
  }

  // The last one of these names, with what is in it, unless one of the others is around what comes next.
  void closeLast(std::initializer_list<std::string_view> names,
                 std::initializer_list<std::string_view> around) {
    for (std::size_t i = open_.size(); i > 0; --i) {
      const std::string& name = open_[i - 1];
      if (std::find(names.begin(), names.end(), name) != names.end()) {
        closeDownTo(i - 1, name);
        return;
      }
      if (std::find(around.begin(), around.end(), name) != around.end()) return;
    }
  }

  std::string_view html_;
  std::size_t at_ = 0;
  std::string kept_;
  std::vector<std::string> open_;
  std::size_t formatting_ = 0;
  std::size_t leaked_ = 0;  // Formatting elements that their block did not close.
  std::size_t paragraphs_ = 0;
  std::unordered_map<std::string, std::size_t> dropped_;
};

}  // namespace

std::string withoutDeepNesting(std::string_view html) { return Filter(html).run(); }

}  // namespace tarnix
