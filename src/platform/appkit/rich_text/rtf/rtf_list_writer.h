#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/attributed_string.h"
#include "platform/appkit/rich_text/rtf/rtf_output.h"

namespace tarnix {

// What a list's marker says: "(3)" is 3 in Arabic numbers between parentheses.
struct RtfMarker {
  // As \levelnfc has them. What neither counts nor is one sign is a literal.
  enum Kind : std::uint8_t {
    arabic = 0,
    upperRoman,
    lowerRoman,
    upperLetter,
    lowerLetter,
    bullet = 23,
    literal = 255
  };

  Kind kind = bullet;
  int number = 1;
  std::string before;  // The whole of a bullet or a literal.
  std::string after;

  bool isCounted() const { return kind < bullet; }

  friend bool operator==(const RtfMarker&, const RtfMarker&) = default;
};

// Finds which items of a text are of one list, so that other programs count on as the markers do.
class RtfListWriter {
 public:
  explicit RtfListWriter(const NSAttributedString& text);

  // The number for \ls of a paragraph, from 1; 0 for none.
  int listOf(std::size_t paragraph) const { return numbers_[paragraph]; }
  // \listtable and \listoverridetable; nothing without lists.
  void write(RtfOutput& to) const;

  static constexpr std::size_t kLevels = 9;

 private:
  struct Level {
    RtfMarker first;
    int next = 0;  // The number that continues it; 0 for a level without an item yet.
    bool isUsed = false;
  };
  using List = std::array<Level, kLevels>;

  static bool continues(const Level& level, const RtfMarker& marker);
  void add(std::string_view marker, std::size_t level);
  static void writeLevel(const Level& level, int index, RtfOutput& to);

  std::vector<List> lists_;
  std::vector<int> numbers_;
  bool isOpen_ = false;
};

// Whether an item's text begins with its marker and a tab.
bool rtfHasMarker(std::string_view text, const ParagraphStyle& style);

}  // namespace tarnix
