#include "platform/appkit/rich_text/rtf/rtf_parser.h"

#include <algorithm>
#include <utility>

#include "platform/appkit/rich_text/text/numeral.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

using Kind = RtfToken::Kind;

constexpr std::size_t kMostGroups = 512;
constexpr std::size_t kMostLinks = 65'536;
constexpr std::size_t kLongestInstruction = 8192;
constexpr std::size_t kLongestListText = 256;
constexpr char32_t kAttachmentCharacter = 0xFFFC;

// The symbol fonts' usual bullets by their places, which some programs also write as U+F0xx.
char32_t characterOfSymbol(char32_t place) {
  switch (place & 0xFF) {
    case 0xB7:
    case 0x6C:
    case 0x9F:
      return 0x2022;
    case 0xA7:
    case 0x6E:
      return 0x25AA;
    case 0x6F:
    case 0xA8:
      return 0x25A1;
    case 0xD8:
      return 0x27A2;
    case 0xFC:
      return 0x2713;
    default:
      return 0xF000 + (place & 0xFF);
  }
}

bool isSymbolPlace(char32_t character) { return character >= 0xF020 && character <= 0xF0FF; }

std::string_view withoutBlanks(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

// The next word of a field's instruction, which may be quoted.
std::string_view takeArgument(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const char end = text.starts_with('"') ? '"' : ' ';
  if (end == '"') text.remove_prefix(1);
  std::size_t size = 0;
  while (size < text.size() && text[size] != end) size += end == '"' && text[size] == '\\' ? 2 : 1;
  const std::string_view argument = text.substr(0, size);
  text.remove_prefix(std::min(size + 1, text.size()));
  return argument;
}

// In quotation marks, a backslash stands before itself and before such a mark.
std::string unescaped(std::string_view argument) {
  std::string text;
  for (std::size_t i = 0; i < argument.size(); ++i) {
    const std::string_view rest = argument.substr(i + 1);
    if (argument[i] == '\\' && (rest.starts_with('\\') || rest.starts_with('"'))) ++i;
    text += argument[i];
  }
  return text;
}

// Where a field leads; empty for one that is no link.
std::string targetOf(std::string_view instruction) {
  if (takeArgument(instruction) != "HYPERLINK") return {};
  std::string target, anchor;
  while (!instruction.empty()) {
    const std::string_view argument = takeArgument(instruction);
    if (argument == "\\l") {
      anchor = unescaped(takeArgument(instruction));
    } else if (argument == "\\o" || argument == "\\t") {
      takeArgument(instruction);
    } else if (!argument.starts_with('\\') && target.empty()) {
      target = unescaped(argument);
    }
  }
  return anchor.empty() ? target : target + "#" + anchor;
}

// What a reading is written above, which is how East Asian ones are said: EQ \o\al(\s\up 11(reading),base).
std::string_view baseOf(std::string_view instruction) {
  const std::size_t comma = instruction.rfind(',');
  const bool isReading = instruction.starts_with("EQ ") && instruction.find("\\o\\a") < comma;
  if (!isReading || comma == std::string_view::npos || !instruction.ends_with(')')) return {};
  return instruction.substr(comma + 1, instruction.size() - comma - 2);
}

}  // namespace

RtfReader::Parser::Parser(String source)
    : source_(std::move(source)), tokens_(source_), documentPage_(*CodePage::numbered(1252)) {}

bool RtfReader::Parser::advance(std::size_t size) {
  const std::size_t end = tokens_.offset() + size;
  while (!isOver_ && tokens_.offset() < end) {
    const RtfToken token = tokens_.next();
    isOver_ = token.kind == Kind::end || text_.isFull();
    read(token);
  }
  return !isOver_;
}

NSAttributedString RtfReader::Parser::take() {
  isOver_ = true;
  flushBytes();
  return text_.take(group_.paragraph);
}

void RtfReader::Parser::read(const RtfToken& token) {
  switch (token.kind) {
    case Kind::end:
      return flushBytes();
    case Kind::groupStart:
      return openGroup();
    case Kind::groupEnd:
      return closeGroup();
    case Kind::text:
      return readText(token.text);
    case Kind::symbol:
      return readSymbol(token.text.front());
    case Kind::byte:
      if (!isFallback()) readByte(static_cast<char>(*token.parameter));
      return;
    case Kind::word:
      if (!isFallback()) readWord(token);
      return;
    case Kind::binary:
      isFallback();
  }
}

void RtfReader::Parser::openGroup() {
  flushBytes();
  fallback_ = 0;
  if (open_.size() >= kMostGroups) {
    ++excess_;
    return;
  }
  open_.push_back(group_);
  group_.isFootnote = false;
  group_.isOptional = false;
}

void RtfReader::Parser::closeGroup() {
  flushBytes();
  fallback_ = 0;
  if (excess_ > 0) {
    --excess_;
    return;
  }
  if (open_.empty()) {
    isOver_ = true;
    return;
  }
  const Group inner = std::exchange(group_, std::move(open_.back()));
  open_.pop_back();
  if (inner.destination != group_.destination || inner.isFootnote) endDestination(inner);
  if (!open_.empty()) return;
  group_.paragraph = inner.paragraph;  // Of the text's end, which nothing else ends.
  isOver_ = true;
}

void RtfReader::Parser::endDestination(const Group& inner) {
  if (inner.destination == Destination::listText) endListText();
  if (inner.destination == Destination::fieldInstruction) endInstruction();
  if (inner.isFootnote) endFootnote();
}

// The marker of a list's item, with one tab behind it.
void RtfReader::Parser::endListText() {
  const std::string text = std::exchange(listText_, {});
  const std::string_view marker = withoutBlanks(text);
  if (marker.empty() || group_.destination != Destination::body) return;
  hasListTexts_ = true;
  emit(std::string(marker) + "\t");
  text_.setListMarker(String(marker));
}

void RtfReader::Parser::endInstruction() {
  const std::string instruction = std::exchange(instruction_, {});
  emit(baseOf(withoutBlanks(instruction)));
  const std::string target = targetOf(withoutBlanks(instruction));
  if (target.empty() || links_.size() >= kMostLinks) return;
  links_.emplace_back(target);
  group_.fieldLink = static_cast<std::uint32_t>(links_.size());
}

// The body of a note stands at its place in brackets; one that may be left out has only its mark, as in the
// plain text of the programs that write it so.
void RtfReader::Parser::beginFootnote(bool isOptional) {
  if (isOptional) return enterDestination(Destination::skip);
  if (group_.destination != Destination::body) return;
  emit("[");
  group_.isFootnote = true;
  group_.isInFootnote = true;
  isFootnoteFresh_ = true;
}

void RtfReader::Parser::endFootnote() {
  isFootnoteFresh_ = false;
  isFootnoteParagraphOver_ = false;
  emit("]");
}

void RtfReader::Parser::addNoteMark() {
  if (group_.isInFootnote) return;
  constexpr std::size_t kAhead = 48;
  const std::string_view ahead = tokens_.upcoming(kAhead);
  const bool isEndnote = ahead.find("\\ftnalt") != std::string_view::npos;
  emit(isEndnote ? numeral(++endnotes_, 2) : numeral(++footnotes_, 0));
}

bool RtfReader::Parser::isFallback() {
  if (fallback_ == 0) return false;
  --fallback_;
  return true;
}

void RtfReader::Parser::readText(std::string_view bytes) {
  const auto passed = std::min(static_cast<std::size_t>(fallback_), bytes.size());
  fallback_ -= static_cast<std::int32_t>(passed);
  addBytes(bytes.substr(passed));
  // The second byte of a character may look like markup.
  if (isTrailAwaited_) addBytes(tokens_.takeByte());
}

void RtfReader::Parser::readSymbol(char symbol) {
  if (symbol == '*') {
    group_.isOptional = true;
    return;
  }
  if (isFallback()) return;
  switch (symbol) {
    case '\\':
    case '{':
    case '}':
      return addBytes(std::string_view(&symbol, 1));
    case '~':
      return addCharacter(0xA0);
    case '-':
      return addCharacter(0xAD);
    case '_':
      return addCharacter(0x2011);
    case '\t':
      return addCharacter('\t');
    case '\r':
    case '\n':
      return endParagraph();
    default:
      return;
  }
}

void RtfReader::Parser::readByte(char byte) { addBytes(std::string_view(&byte, 1)); }

void RtfReader::Parser::addBytes(std::string_view bytes) {
  if (open_.empty() || bytes.empty()) return;
  switch (group_.destination) {
    case Destination::skip:
    case Destination::ignoreText:
    case Destination::unicodePair:
    case Destination::styleSheet:
    case Destination::listTable:
    case Destination::listOverrideTable:
      return;
    case Destination::colorTable:
      return colors_.append(bytes);
    case Destination::fontTable:
      return fonts_.appendName(bytes, documentPage_);
    case Destination::levelText:
      return lists_.appendLevelText(static_cast<unsigned char>(bytes.front()) < ' ' ? std::string(bytes)
                                                                                    : decoded(bytes));
    case Destination::body:
    case Destination::listText:
    case Destination::fieldInstruction:
    case Destination::attachment:
      break;
  }
  const RtfFont* const present = font();
  const bool isSymbol =
      present != nullptr && present->isSymbol && group_.destination != Destination::fieldInstruction;
  while (!bytes.empty()) {
    const bool isPlain = static_cast<unsigned char>(bytes.front()) < 0x80 && !isTrailAwaited_ && !isSymbol;
    if (!isPlain) {
      addHighByte(bytes.front());
      bytes.remove_prefix(1);
      continue;
    }
    flushBytes();
    const std::size_t plain = asciiPrefix(bytes);
    emit(bytes.substr(0, plain));
    bytes.remove_prefix(plain);
  }
}

void RtfReader::Parser::addHighByte(char byte) {
  const RtfFont* const present = font();
  const auto value = static_cast<unsigned char>(byte);
  if (present != nullptr && present->isSymbol)
    return addCharacter(value < ' ' ? value : characterOfSymbol(value));
  const CodePage& page = present != nullptr && present->page ? *present->page : documentPage_;
  isTrailAwaited_ = !isTrailAwaited_ && page.isLead(value);
  bytes_ += byte;
}

void RtfReader::Parser::flushBytes() {
  isTrailAwaited_ = false;
  if (bytes_.empty()) return;
  emit(decoded(std::exchange(bytes_, {})));
}

std::string RtfReader::Parser::decoded(std::string_view bytes) const {
  const RtfFont* const present = font();
  std::string text;
  (present != nullptr && present->page ? *present->page : documentPage_).decode(bytes, text);
  return text;
}

void RtfReader::Parser::readUnicode(std::int32_t number) {
  fallback_ = group_.fallbackSize;
  const auto unit = static_cast<char32_t>(number < 0 ? number + 0x10000 : number);
  const bool isLow = unit >= 0xDC00 && unit < 0xE000;
  const char32_t high = isLow ? std::exchange(highSurrogate_, 0) : 0;
  if (unit >= 0xD800 && unit < 0xDC00) {
    flushBytes();
    highSurrogate_ = unit;
    return;
  }
  if (high != 0) return addCharacter(0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FF));
  addCharacter(isSymbolPlace(unit) ? characterOfSymbol(unit) : unit);
}

void RtfReader::Parser::addCharacter(char32_t character) {
  flushBytes();
  const Utf8Bytes utf8(character);
  if (group_.destination == Destination::levelText) return lists_.appendLevelText(utf8);
  if (group_.destination == Destination::fontTable) return fonts_.appendDecodedName(utf8, documentPage_);
  const bool isText =
      group_.destination == Destination::body || group_.destination == Destination::listText ||
      group_.destination == Destination::fieldInstruction || group_.destination == Destination::attachment;
  if (isText && character == kAttachmentCharacter && !attachment_.empty()) return addAttachment();
  if (isText) emit(utf8);
}

void RtfReader::Parser::emit(std::string_view utf8) {
  if (std::exchange(highSurrogate_, 0) != 0) emit(kUtf8Replacement);  // It found no second half.
  if (group_.destination == Destination::fieldInstruction) {
    if (instruction_.size() + utf8.size() <= kLongestInstruction) instruction_ += utf8;
    return;
  }
  if (group_.destination == Destination::attachment) {
    if (attachment_.size() + utf8.size() <= kLongestListText) attachment_ += utf8;
    return;
  }
  if (group_.look.isHidden || group_.look.isDeleted) return;
  if (group_.destination == Destination::listText) {
    if (listText_.size() + utf8.size() <= kLongestListText) listText_ += utf8;
    return;
  }
  if (isFootnoteFresh_) {
    utf8.remove_prefix(std::min(utf8.find_first_not_of(" \t"), utf8.size()));
    if (utf8.empty()) return;
    isFootnoteFresh_ = false;
  }
  if (group_.isInFootnote && std::exchange(isFootnoteParagraphOver_, false)) text_.append(" ", attributes());
  if (text_.isParagraphEmpty() && group_.paragraph.list != 0) writeMarker();
  text_.append(utf8, attributes());
}

// For documents that leave the numbering to the reader.
void RtfReader::Parser::writeMarker() {
  if (hasListTexts_ || group_.isInFootnote) return;
  const AssembledParagraph& paragraph = group_.paragraph;
  const std::string marker = lists_.nextMarker(paragraph.list, paragraph.listLevel);
  if (withoutBlanks(marker).empty()) return;
  text_.append(marker + "\t", attributes());
  text_.setListMarker(String(marker));
}

void RtfReader::Parser::endParagraph() {
  flushBytes();
  if (group_.destination != Destination::body || group_.look.isHidden || group_.look.isDeleted) return;
  if (group_.isInFootnote) {
    isFootnoteParagraphOver_ = true;
    return;
  }
  text_.endParagraph(attributes(), group_.paragraph);
}

void RtfReader::Parser::addPicture() {
  if (group_.look.isHidden || group_.look.isDeleted) return;
  TextAttributes picture = attributesOf(group_.look);
  picture.attachment = "Picture";
  text_.append(kAttachment, text_.add(picture));
}

void RtfReader::Parser::addAttachment() {
  TextAttributes object = attributesOf(group_.look);
  object.attachment = String(std::exchange(attachment_, {}));
  text_.append(kAttachment, text_.add(object));
}

const RtfFont* RtfReader::Parser::fontOf(const Look& look) const {
  const RtfFont* const associated = look.isAssociated ? fonts_.find(look.associatedFont) : nullptr;
  return associated != nullptr ? associated : fonts_.find(look.font);
}

TextAttributes RtfReader::Parser::attributesOf(const Look& look) const {
  TextAttributes attributes;
  const bool hasOwnSize = look.isAssociated && look.associatedHalfPoints > 0;
  if (const RtfFont* const found = fontOf(look)) attributes.font.familyName = found->family;
  attributes.font.pointSize = (hasOwnSize ? look.associatedHalfPoints : look.halfPoints) / 2.0;
  attributes.font.isBold = look.isAssociated ? look.isAssociatedBold : look.isBold;
  attributes.font.isItalic = look.isAssociated ? look.isAssociatedItalic : look.isItalic;
  attributes.underline = look.underline;
  attributes.strikethrough = look.strikethrough;
  attributes.capitals = look.capitals;
  attributes.superscript = look.superscript;
  attributes.color = colors_.color(look.color);
  attributes.highlight = colors_.color(look.background);
  if (look.link > 0) attributes.link = links_[look.link - 1];
  return attributes;
}

std::uint32_t RtfReader::Parser::attributes() {
  if (presentLook_ != nullptr && *presentLook_ == group_.look) return presentAttributes_;
  auto [found, isNew] = known_.try_emplace(group_.look, 0);
  if (isNew) found->second = text_.add(attributesOf(group_.look));
  presentLook_ = &found->first;
  presentAttributes_ = found->second;
  return presentAttributes_;
}

}  // namespace tarnix
