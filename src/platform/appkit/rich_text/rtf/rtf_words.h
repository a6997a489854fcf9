#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnix {

// What a control word does. For those that stand for characters, `RtfWord::value` is the code point.
enum class RtfAction : std::uint8_t {
  character,
  // Breaks.
  paragraph,
  section,
  lineBreak,
  pageBreak,
  noteMark,
  cell,
  row,
  nestedCell,
  nestedRow,
  // Characters' looks; the value is what it is when the word has no number.
  plain,
  bold,
  italic,
  underline,
  noUnderline,
  strikethrough,
  doubleStrikethrough,
  superscript,
  subscript,
  raised,
  lowered,
  noSuperscript,
  allCapitals,
  smallCapitals,
  hidden,
  deleted,
  font,
  fontSize,
  color,
  background,
  associatedBold,
  associatedItalic,
  associatedFont,
  associatedFontSize,
  associated,
  characterStyle,
  // Paragraphs' looks.
  paragraphDefault,
  alignment,
  leftIndent,
  rightIndent,
  firstLineIndent,
  spaceBefore,
  spaceAfter,
  lineSpacing,
  lineSpacingIsMultiple,
  tabAlignment,
  tab,
  leftToRight,
  rightToLeft,
  outlineLevel,
  inTable,
  tableDepth,
  paragraphStyle,
  list,
  listLevel,
  itemLevel,
  // Rows.
  rowDefinition,
  cellEdge,
  rowLeft,
  mergeNext,
  mergeNextRow,
  // Unicode and encodings.
  unicode,
  unicodeFallback,
  ansiCodePage,
  codePage,
  // Destinations, and what may stand in them.
  skip,
  body,
  ignoreText,
  fontTable,
  colorTable,
  styleSheet,
  listTable,
  listOverrideTable,
  listText,
  field,
  fieldInstruction,
  fieldResult,
  picture,
  attachment,
  footnote,
  unicodePair,
  unicodeText,
  fontCharset,
  fontCodePage,
  red,
  green,
  blue,
  defaultFont,
  defaultSize,
  listEntry,
  listDefinitionLevel,
  listNumberFormat,
  listStart,
  listLevelText,
  listIdentifier,
};

struct RtfWord {
  RtfAction action;
  std::int32_t value = 0;
};

// Absent for a word that means nothing here.
const RtfWord* rtfWordNamed(std::string_view name);

}  // namespace tarnix
