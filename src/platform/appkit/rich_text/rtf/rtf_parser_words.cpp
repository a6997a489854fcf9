#include <algorithm>
#include <utility>

#include "platform/appkit/rich_text/rtf/rtf_parser.h"

namespace tarnix {
namespace {

using Action = RtfAction;

constexpr double kTwipsPerPoint = 20;
constexpr std::size_t kMostTabs = 64;
constexpr std::int32_t kMostHalfPoints = 4000;

double points(std::int32_t twips) { return twips / kTwipsPerPoint; }

bool isWithin(Action action, Action first, Action last) { return first <= action && action <= last; }

}  // namespace

// A word that means nothing here leaves out its destination where the document says that it may be left out.
void RtfReader::Parser::readWord(const RtfToken& token) {
  const bool isOptional = std::exchange(group_.isOptional, false);
  if (group_.destination == Destination::skip) return;
  const RtfWord* const word = rtfWordNamed(token.text);
  if (word == nullptr) {
    if (isOptional) enterDestination(Destination::skip);
    return;
  }
  const std::int32_t value = token.parameter.value_or(word->value);
  if (word->action == Action::unicode) {
    if (token.parameter) readUnicode(*token.parameter);
    return;
  }
  flushBytes();
  if (isWithin(word->action, Action::character, Action::nestedRow)) return readBreak(*word);
  if (isWithin(word->action, Action::plain, Action::characterStyle)) {
    const bool isTold = word->action == Action::underline && token.parameter.has_value();
    return readLook(isTold && value == 0 ? Action::noUnderline : word->action, isTold ? word->value : value);
  }
  if (isWithin(word->action, Action::paragraphDefault, Action::itemLevel))
    return readParagraph(word->action, value);
  if (isWithin(word->action, Action::rowDefinition, Action::mergeNextRow))
    return readRow(word->action, value);
  if (isWithin(word->action, Action::skip, Action::unicodeText)) return readDestination(*word, isOptional);
  readTable(word->action, value);
}

void RtfReader::Parser::readBreak(const RtfWord& word) {
  if (word.action == Action::character) return addCharacter(static_cast<char32_t>(word.value));
  if (group_.destination != Destination::body) return;
  const std::uint16_t nested = std::max<std::uint16_t>(group_.paragraph.depth(), 2);
  switch (word.action) {
    case Action::paragraph:
      return endParagraph();
    case Action::section:
      if (!text_.isParagraphEmpty()) endParagraph();
      return;
    case Action::lineBreak:
      return emit(group_.isInFootnote ? " " : kLineSeparator);
    case Action::pageBreak:
      return emit(group_.isInFootnote ? " " : "\f");
    case Action::noteMark:
      return addNoteMark();
    case Action::cell:
      return text_.endCell(attributes(), group_.paragraph, 1);
    case Action::row:
      return text_.endRow(1);
    case Action::nestedCell:
      return text_.endCell(attributes(), group_.paragraph, nested);
    case Action::nestedRow:
      return text_.endRow(nested);
    default:
      return;
  }
}

void RtfReader::Parser::readLook(RtfAction action, std::int32_t value) {
  Look& look = group_.look;
  switch (action) {
    case Action::plain: {
      Look fresh;
      fresh.font = defaultFont_;
      fresh.halfPoints = defaultHalfPoints_;
      fresh.link = look.link;
      fresh.isDeleted = look.isDeleted;
      look = fresh;
      return;
    }
    case Action::bold:
      look.isBold = value != 0;
      return;
    case Action::italic:
      look.isItalic = value != 0;
      return;
    case Action::underline:
      look.underline = static_cast<LineStyle>(value);
      return;
    case Action::noUnderline:
      look.underline = LineStyle::none;
      return;
    case Action::strikethrough:
      look.strikethrough = value != 0 ? LineStyle::single : LineStyle::none;
      return;
    case Action::doubleStrikethrough:
      look.strikethrough = value != 0 ? LineStyle::twofold : LineStyle::none;
      return;
    case Action::superscript:
    case Action::raised:
      look.superscript = value != 0 ? 1 : 0;
      return;
    case Action::subscript:
    case Action::lowered:
      look.superscript = value != 0 ? -1 : 0;
      return;
    case Action::noSuperscript:
      look.superscript = 0;
      return;
    case Action::allCapitals:
      look.capitals = value != 0 ? TextCapitals::all : TextCapitals::asWritten;
      return;
    case Action::smallCapitals:
      look.capitals = value != 0 ? TextCapitals::small : TextCapitals::asWritten;
      return;
    case Action::hidden:
      look.isHidden = value != 0;
      return;
    case Action::deleted:
      look.isDeleted = value != 0;
      return;
    case Action::associatedBold:
      look.isAssociatedBold = value != 0;
      return;
    case Action::associatedItalic:
      look.isAssociatedItalic = value != 0;
      return;
    case Action::associatedFont:
      look.associatedFont = value;
      return;
    case Action::associatedFontSize:
      look.associatedHalfPoints = std::clamp(value, std::int32_t{1}, kMostHalfPoints);
      return;
    case Action::associated:
      look.isAssociated = value != 0;
      return;
    case Action::fontSize:
      look.halfPoints = std::clamp(value, std::int32_t{1}, kMostHalfPoints);
      return;
    case Action::color:
      look.color = value;
      return;
    case Action::background:
      look.background = value;
      return;
    case Action::font:
      look.font = value;
      if (group_.destination == Destination::fontTable) fonts_.begin(value);
      return;
    default:
      return;
  }
}

void RtfReader::Parser::readParagraph(RtfAction action, std::int32_t value) {
  AssembledParagraph& paragraph = group_.paragraph;
  ParagraphStyle& style = paragraph.style;
  switch (action) {
    case Action::paragraphDefault:
      paragraph = AssembledParagraph();
      return;
    case Action::alignment:
      style.alignment = static_cast<TextAlignment>(value);
      return;
    case Action::leftIndent:
      style.headIndent = points(value);
      return;
    case Action::rightIndent:
      style.tailIndent = points(value);
      return;
    case Action::firstLineIndent:
      paragraph.firstLineOffset = points(value);
      return;
    case Action::spaceBefore:
      style.spacingBefore = points(value);
      return;
    case Action::spaceAfter:
      style.spacingAfter = points(value);
      return;
    case Action::lineSpacing:
      paragraph.lineSpacing = points(value);
      return;
    case Action::lineSpacingIsMultiple:
      paragraph.isSpacingMultiple = value != 0;
      return;
    case Action::tabAlignment:
      paragraph.nextTab = static_cast<TextAlignment>(value);
      return;
    case Action::tab:
      if (style.tabStops.size() < kMostTabs) style.tabStops.push_back({points(value), paragraph.nextTab});
      paragraph.nextTab = TextAlignment::left;
      return;
    case Action::leftToRight:
      style.direction = WritingDirection::leftToRight;
      return;
    case Action::rightToLeft:
      style.direction = WritingDirection::rightToLeft;
      return;
    case Action::outlineLevel:
      style.headingLevel = value >= 0 && value < 6 ? static_cast<std::uint8_t>(value + 1) : std::uint8_t{0};
      if (group_.destination == Destination::styleSheet) headings_[styleNumber_] = style.headingLevel;
      return;
    case Action::inTable:
      paragraph.isInTable = value >= 0;
      return;
    case Action::tableDepth:
      paragraph.tableDepth =
          static_cast<std::uint16_t>(std::clamp<std::int32_t>(value, 0, TextAssembly::kMostDepth));
      return;
    case Action::paragraphStyle:
      styleNumber_ = value;
      paragraph.headingOfStyle = headings_.count(value) > 0 ? headings_.at(value) : std::uint8_t{0};
      return;
    case Action::list:
      paragraph.list = value;
      if (group_.destination == Destination::listOverrideTable) lists_.setOverride(value);
      return;
    case Action::listLevel:
      paragraph.listLevel = static_cast<std::uint8_t>(std::clamp<std::int32_t>(value, 0, 8));
      return;
    case Action::itemLevel:
      style.listLevel = static_cast<std::uint8_t>(std::clamp<std::int32_t>(value, 0, 9));
      return;
    default:
      return;
  }
}

// Of the rows of tables within tables only the cells count.
void RtfReader::Parser::readRow(RtfAction action, std::int32_t value) {
  if (group_.paragraph.depth() > 1) return;
  TableRow& row = text_.row();
  switch (action) {
    case Action::rowDefinition:
      row = {};
      cell_ = {};
      return;
    case Action::rowLeft:
      row.leftEdge = value;
      return;
    case Action::mergeNext:
      cell_.goesOnInColumns = true;
      return;
    case Action::mergeNextRow:
      cell_.goesOnInRows = true;
      return;
    default:
      cell_.rightEdge = value;
      if (row.cells.size() < TableRow::kMostCells) row.cells.push_back(std::exchange(cell_, {}));
  }
}

void RtfReader::Parser::enterDestination(Destination destination) { group_.destination = destination; }

void RtfReader::Parser::readDestination(const RtfWord& word, bool isOptional) {
  const bool isBody = group_.destination == Destination::body;
  switch (word.action) {
    case Action::skip:
      return enterDestination(Destination::skip);
    case Action::body:
      // Only what is shown at all leads back to the body.
      if (isBody || group_.destination == Destination::ignoreText) enterDestination(Destination::body);
      return;
    case Action::ignoreText:
      return enterDestination(Destination::ignoreText);
    case Action::fontTable:
      return enterDestination(Destination::fontTable);
    case Action::colorTable:
      return enterDestination(Destination::colorTable);
    case Action::styleSheet:
      return enterDestination(Destination::styleSheet);
    case Action::listTable:
      return enterDestination(Destination::listTable);
    case Action::listOverrideTable:
      return enterDestination(Destination::listOverrideTable);
    case Action::listText:
      return enterDestination(isBody ? Destination::listText : Destination::skip);
    case Action::fieldInstruction:
      return enterDestination(isBody ? Destination::fieldInstruction : Destination::skip);
    case Action::fieldResult:
      if (group_.fieldLink > 0) group_.look.link = group_.fieldLink;
      return;
    case Action::picture:
      if (isBody) addPicture();
      return enterDestination(Destination::skip);
    case Action::attachment:
      return enterDestination(isBody ? Destination::attachment : Destination::skip);
    case Action::footnote:
      return beginFootnote(isOptional);
    case Action::unicodePair:
      group_.outer = group_.destination;
      return enterDestination(Destination::unicodePair);
    case Action::unicodeText:
      if (group_.destination == Destination::unicodePair) enterDestination(group_.outer);
      return;
    default:
      return;
  }
}

void RtfReader::Parser::readTable(RtfAction action, std::int32_t value) {
  const bool isInList = group_.destination == Destination::listTable;
  switch (action) {
    case Action::unicodeFallback:
      group_.fallbackSize = std::clamp<std::int32_t>(value, 0, 255);
      return;
    case Action::ansiCodePage:
    case Action::codePage:
      if (auto page = CodePage::numbered(value)) documentPage_ = std::move(*page);
      return;
    case Action::defaultFont:
      defaultFont_ = value;
      if (open_.size() == 1) group_.look.font = value;
      return;
    case Action::defaultSize:
      defaultHalfPoints_ = std::clamp(value, std::int32_t{0}, kMostHalfPoints);
      if (open_.size() == 1) group_.look.halfPoints = defaultHalfPoints_;
      return;
    case Action::fontCharset:
      return fonts_.setCharset(value);
    case Action::fontCodePage:
      return fonts_.setCodePage(value);
    case Action::red:
      return colors_.setRed(value);
    case Action::green:
      return colors_.setGreen(value);
    case Action::blue:
      return colors_.setBlue(value);
    case Action::listEntry:
      return lists_.beginList();
    case Action::listDefinitionLevel:
      return lists_.beginLevel();
    case Action::listNumberFormat:
      return lists_.setFormat(value);
    case Action::listStart:
      return lists_.setStart(value);
    case Action::listLevelText:
      return enterDestination(isInList ? Destination::levelText : Destination::skip);
    case Action::listIdentifier:
      return isInList ? lists_.define(value) : lists_.beginOverride(value);
    default:
      return;
  }
}

}  // namespace tarnix
