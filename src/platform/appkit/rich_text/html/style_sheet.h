#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/appkit/rich_text/html/css_values.h"

namespace tarnix::css {

// What selectors look at. The views are borrowed.
struct ElementNames {
  std::string_view tag;
  std::string_view id;
  std::vector<std::string_view> classes;
  const ElementNames* parent = nullptr;
};

// Simple style sheets: rules for elements, classes and identifiers, alone or within others. What else
// selectors can say selects nothing here.
class StyleSheet {
 public:
  void add(std::string_view text);
  // In the order in which they apply: of two for one property the later one counts. What has been asked for
  // too much in all has no more to say.
  std::vector<const Declaration*> declarationsFor(const ElementNames& element);

 private:
  struct Compound {
    std::string tag;
    std::string id;
    std::vector<std::string> classes;
    bool isChild = false;  // The one before it must be the parent, not any ancestor.
  };
  struct Rule {
    std::vector<Compound> selector;
    std::size_t body = 0;  // In `bodies_`.
    std::uint32_t specificity = 0;
  };

  void addRules(std::string_view text, int depth);
  void addSelector(std::string_view text, std::size_t body);
  static bool parse(std::string_view text, Compound& compound);
  static bool matches(const Compound& compound, const ElementNames& element);
  static bool matches(const Rule& rule, const ElementNames& element);

  std::vector<std::vector<Declaration>> bodies_;
  std::vector<Rule> rules_;
  // Rules by what the last compound asks for: ".class", "#id", "tag" or "*".
  std::unordered_multimap<std::string, std::size_t> byKey_;
  std::size_t steps_ = 0;  // Rules looked at, and declarations given.
};

}  // namespace tarnix::css
