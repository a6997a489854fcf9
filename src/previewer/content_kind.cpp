#include "previewer/content_kind.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnix::previewer {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  const char* format;
};

constexpr std::array kSignatures{
    Signature{"\x89PNG\r\n\x1a\n"sv, "png"},
    Signature{"\xff\xd8\xff"sv, "jpeg"},
    Signature{"GIF87a"sv, "gif"},
    Signature{"GIF89a"sv, "gif"},
    Signature{"II*\0"sv, "tiff"},
    Signature{"MM\0*"sv, "tiff"},
    Signature{"II+\0"sv, "tiff"},
    Signature{"MM\0+"sv, "tiff"},
    Signature{"\0\0\1\0"sv, "ico"},
    Signature{"\0\0\2\0"sv, "ico"},
};

// Two letters are no signature by themselves: four bytes of nothing and the place of the pixels follow.
bool isBitmap(std::string_view text) {
  return text.size() > 30 && text.starts_with("BM") && text.substr(6, 4) == "\0\0\0\0"sv && text[12] == 0;
}

bool isSpace(char each) { return " \t\r\n"sv.find(each) != std::string_view::npos; }

const char* portableMapFormat(std::string_view text) {
  if (text.size() < 8 || text[0] != 'P' || !isSpace(text[2])) return nullptr;
  const bool isNumbered = text.substr(3, 5).find_first_of("0123456789#") != std::string_view::npos;
  switch (isNumbered ? text[1] : ' ') {
    case '1':
    case '4':
      return "pbm";
    case '2':
    case '5':
      return "pgm";
    case '3':
    case '6':
      return "ppm";
    default:
      return nullptr;
  }
}

// Behind the XML declaration, comments and a document type, which may come before it.
bool isDrawing(std::string_view text) {
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    std::string_view end;
    if (text.starts_with("<?"))
      end = "?>";
    else if (text.starts_with("<!--"))
      end = "-->";
    else if (text.starts_with("<!DOCTYPE"))
      end = text.substr(0, text.find('>')).find('[') == std::string_view::npos ? ">"sv : "]>"sv;
    else
      break;
    const std::size_t at = text.find(end);
    if (at == std::string_view::npos) return false;
    text.remove_prefix(at + end.size());
  }
  return text.starts_with("<svg") && text.size() > 4 &&
         (isSpace(text[4]) || text[4] == '>' || text[4] == '/');
}

}  // namespace

ContentKind contentKindOf(std::string_view beginning) {
  for (const Signature& each : kSignatures) {
    if (beginning.starts_with(each.bytes)) return {ContentKind::Family::picture, each.format};
  }
  if (beginning.starts_with("RIFF") && beginning.substr(0, 12).ends_with("WEBP"))
    return {ContentKind::Family::picture, "webp"};
  if (isBitmap(beginning)) return {ContentKind::Family::picture, "bmp"};
  if (const char* const format = portableMapFormat(beginning)) return {ContentKind::Family::picture, format};
  if (beginning.substr(0, 1024).find("%PDF-") != std::string_view::npos)
    return {ContentKind::Family::document, ""};
  if (isDrawing(beginning)) return {ContentKind::Family::drawing, ""};
  return {};
}

}  // namespace tarnix::previewer
