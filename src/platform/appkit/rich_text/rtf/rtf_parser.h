#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/appkit/rich_text/rtf/rtf_tables.h"
#include "platform/appkit/rich_text/rtf/rtf_tokens.h"
#include "platform/appkit/rich_text/rtf/rtf_words.h"
#include "platform/appkit/rich_text/text/text_assembly.h"

namespace tarnix {

// The state of a reading: what the groups that are open have set, and what was read so far.
class RtfReader::Parser {
 public:
  explicit Parser(String source);

  bool advance(std::size_t size);
  NSAttributedString take();

 private:
  enum class Destination : std::uint8_t {
    body,
    skip,        // Everything in it is left out.
    ignoreText,  // Only what stands in a destination within it counts.
    unicodePair,
    fontTable,
    colorTable,
    styleSheet,
    listTable,
    listOverrideTable,
    levelText,
    listText,
    fieldInstruction,
    attachment,
  };
  // How characters look, in the numbers of the document.
  struct Look {
    std::int32_t font = -1;
    std::int32_t halfPoints = 24;
    // Of right-to-left and East Asian characters, where a run says that its are such; -1 and 0 for those
    // above.
    std::int32_t associatedFont = -1;
    std::int32_t associatedHalfPoints = 0;
    std::int32_t color = 0;
    std::int32_t background = 0;
    std::uint32_t link = 0;  // In `links_`, from 1 on.
    LineStyle underline = LineStyle::none;
    LineStyle strikethrough = LineStyle::none;
    TextCapitals capitals = TextCapitals::asWritten;
    std::int8_t superscript = 0;
    bool isBold = false;
    bool isItalic = false;
    bool isAssociatedBold = false;
    bool isAssociatedItalic = false;
    bool isAssociated = false;
    bool isHidden = false;
    bool isDeleted = false;
    auto operator<=>(const Look&) const = default;
  };
  struct Group {
    Destination destination = Destination::body;
    Destination outer = Destination::body;  // Around the pair of which this is one half.
    Look look;
    AssembledParagraph paragraph;
    std::int32_t fallbackSize = 1;  // Characters that stand for one of \u where that is not understood.
    std::uint32_t fieldLink = 0;
    bool isOptional = false;  // \* was just read.
    bool isFootnote = false;
    bool isInFootnote = false;
  };

  void read(const RtfToken& token);
  void openGroup();
  void closeGroup();
  void endDestination(const Group& inner);
  void endListText();
  void endInstruction();
  void addAttachment();
  void endFootnote();

  // Whether what was read stands in for a \u before it.
  bool isFallback();
  void readText(std::string_view bytes);
  void readSymbol(char symbol);
  void readByte(char byte);
  void addBytes(std::string_view bytes);
  void addHighByte(char byte);
  void flushBytes();
  std::string decoded(std::string_view bytes) const;
  void readUnicode(std::int32_t number);
  void addCharacter(char32_t character);
  void emit(std::string_view utf8);
  void writeMarker();

  void readWord(const RtfToken& token);
  void readBreak(const RtfWord& word);
  void readLook(RtfAction action, std::int32_t value);
  void readParagraph(RtfAction action, std::int32_t value);
  void readRow(RtfAction action, std::int32_t value);
  void readDestination(const RtfWord& word, bool isOptional);
  void readTable(RtfAction action, std::int32_t value);
  void enterDestination(Destination destination);
  void beginFootnote(bool isOptional);
  void addPicture();
  void addNoteMark();
  void endParagraph();

  TextAttributes attributesOf(const Look& look) const;
  std::uint32_t attributes();
  const RtfFont* font() const { return fontOf(group_.look); }
  const RtfFont* fontOf(const Look& look) const;

  String source_;
  RtfTokens tokens_;
  bool isOver_ = false;
  Group group_;
  std::vector<Group> open_;
  std::size_t excess_ = 0;     // Groups that are open beyond the limit.
  std::int32_t fallback_ = 0;  // Characters that are still to be passed over.
  char32_t highSurrogate_ = 0;
  std::string bytes_;  // Of characters that are not ASCII, in the present font's encoding.
  bool isTrailAwaited_ = false;

  CodePage documentPage_;
  std::int32_t defaultFont_ = -1;
  std::int32_t defaultHalfPoints_ = 24;
  RtfFonts fonts_;
  RtfColors colors_;
  RtfLists lists_;
  std::map<std::int32_t, std::uint8_t> headings_;  // Levels by the numbers of styles.
  std::int32_t styleNumber_ = 0;                   // The last one that was named.
  std::vector<String> links_;
  std::string instruction_;
  std::string listText_;
  std::string attachment_;     // The name of the object that comes next.
  bool hasListTexts_ = false;  // The document tells the markers of lists itself.
  TableRow::Cell cell_;        // The next of the row that is being defined.
  bool isFootnoteFresh_ = false;
  bool isFootnoteParagraphOver_ = false;
  std::int32_t footnotes_ = 0;
  std::int32_t endnotes_ = 0;

  TextAssembly text_;
  std::map<Look, std::uint32_t> known_;
  const Look* presentLook_ = nullptr;  // In `known_`.
  std::uint32_t presentAttributes_ = 0;
};

}  // namespace tarnix
