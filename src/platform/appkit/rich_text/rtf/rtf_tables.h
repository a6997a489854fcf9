#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/rich_text/text/code_page.h"
#include "platform/appkit/text_attributes.h"

// What the tables at the beginning of an RTF document hold, each bounded.
namespace tarnix {

struct RtfFont {
  String family;
  std::optional<CodePage> page;  // Absent where the document's counts.
  bool isSymbol = false;         // Its bytes are places in the font, not characters.
};

class RtfFonts {
 public:
  // Null for an unknown font.
  const RtfFont* find(std::int32_t number) const;

  // While the table is read: the font that the following tells of.
  void begin(std::int32_t number);
  void setCharset(std::int32_t charset);
  void setCodePage(std::int32_t number);
  // Names end with a semicolon.
  void appendName(std::string_view bytes, const CodePage& documentPage);
  // What \u says of a name.
  void appendDecodedName(std::string_view utf8, const CodePage& documentPage);

 private:
  void decodeName(const CodePage& documentPage);

  std::map<std::int32_t, RtfFont> fonts_;
  RtfFont* current_ = nullptr;
  std::string name_;     // In the encoding of the font.
  std::string decoded_;  // What stands before it.
};

class RtfColors {
 public:
  // Absent for the automatic one, and for an unknown one.
  std::optional<TextColor> color(std::int32_t number) const;

  void setRed(std::int32_t value) { set(&TextColor::red, value); }
  void setGreen(std::int32_t value) { set(&TextColor::green, value); }
  void setBlue(std::int32_t value) { set(&TextColor::blue, value); }
  // Each semicolon ends a colour.
  void append(std::string_view text);

 private:
  void set(std::uint8_t TextColor::*part, std::int32_t value);

  std::vector<std::optional<TextColor>> colors_;
  std::optional<TextColor> next_;
};

// Lists by their definitions, for documents that leave the markers to the reader.
class RtfLists {
 public:
  void beginList();
  void beginLevel();
  void setFormat(std::int32_t format);
  void setStart(std::int32_t start);
  // A length, then bytes of which those below 9 stand for the number of that level.
  void appendLevelText(std::string_view bytes);
  // The list that was read has this identifier.
  void define(std::int32_t identifier);
  // The number by which paragraphs name the list of this identifier.
  void beginOverride(std::int32_t identifier) { overridden_ = identifier; }
  void setOverride(std::int32_t list);

  // The marker of the next item of a list at a level; empty for an unknown list.
  std::string nextMarker(std::int32_t list, std::uint8_t level);

 private:
  struct Level {
    std::int32_t format = 0;
    std::int32_t start = 1;
    std::string text;
  };
  struct List {
    std::vector<Level> levels;
    std::array<std::int32_t, 9> numbers{};  // Items so far, by level.
  };
  Level* level();

  std::map<std::int32_t, List> definitions_;
  std::map<std::int32_t, List> lists_;
  List current_;
  std::int32_t overridden_ = 0;
};

}  // namespace tarnix
