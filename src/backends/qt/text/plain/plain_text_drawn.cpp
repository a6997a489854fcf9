#include "backends/qt/text/plain/plain_text_drawn.h"

#include <algorithm>
#include <array>

#include "backends/qt/text/plain/plain_text_decoding.h"

namespace tarnix::qt {
namespace {

constexpr int kMostMarks = 30;
// Each colour change makes an item of its own to shape and break, in time quadratic in their number.
constexpr qsizetype kMostColouredLabels = 64;

QString bracketed(const char* name) { return QLatin1Char('[') + QLatin1String(name) + QLatin1Char(']'); }

struct Named {
  char32_t value;
  const char* name;
};

constexpr std::array<Named, 12> kBidiControls{{{0x061C, "ALM"},
                                               {0x200E, "LRM"},
                                               {0x200F, "RLM"},
                                               {0x202A, "LRE"},
                                               {0x202B, "RLE"},
                                               {0x202C, "PDF"},
                                               {0x202D, "LRO"},
                                               {0x202E, "RLO"},
                                               {0x2066, "LRI"},
                                               {0x2067, "RLI"},
                                               {0x2068, "FSI"},
                                               {0x2069, "PDI"}}};

constexpr std::array<const char*, 0x20> kControls{"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL",
                                                  "BS",  "HT",  "LF",  "VT",  "FF",  "CR",  "SO",  "SI",
                                                  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB",
                                                  "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};

QString controlLabel(char32_t value) {
  if (value < kControls.size()) return bracketed(kControls[value]);
  if (value == 0x7F) return bracketed("DEL");
  return bracketed(QByteArray::number(static_cast<unsigned>(value), 16).toUpper().constData());
}

// Empty for all that is drawn as itself.
QString labelOf(char32_t value) {
  if (value == U'\t') return QString();
  if (value < 0x20 || (value >= 0x7F && value < 0xA0)) return controlLabel(value);
  if (value < kBidiControls.front().value || value > kBidiControls.back().value) return QString();
  const auto found = std::find_if(kBidiControls.begin(), kBidiControls.end(),
                                  [value](const Named& named) { return named.value == value; });
  return found == kBidiControls.end() ? QString() : bracketed(found->name);
}

// The toolkit takes these for the ends of paragraphs and frames.
bool isSeparator(char32_t value) { return value == 0x2029 || (value >= 0xFDD0 && value <= 0xFDD1); }

class Drawing {
 public:
  Drawing(const QColor& labelColor, DrawnControls controls) : labelColor_(labelColor), controls_(controls) {}

  void add(char32_t value, std::size_t offset) {
    marks_ = QChar::isMark(value) ? marks_ + 1 : 0;
    if (marks_ > kMostMarks) {
      if (omitted_++ == 0) firstOmitted_ = offset;
      return;
    }
    addOmitted();
    if (const QString label = shownLabelOf(value); !label.isEmpty()) return addLabel(label, offset);
    const bool isPageBreak = value == U'\f';
    result_.text.append(QChar::fromUcs4(isPageBreak ? char32_t{QChar::LineSeparator} : value));
    fillOffsets(offset);
  }

  DrawnText take(std::size_t end) {
    addOmitted();
    result_.offsets.push_back(static_cast<std::uint32_t>(end));
    return std::move(result_);
  }

 private:
  QString shownLabelOf(char32_t value) const {
    if (controls_ == DrawnControls::all) return labelOf(value);
    if (isSeparator(value)) return controlLabel(value);
    return value < 0xA0 && value != U'\f' ? labelOf(value) : QString();
  }

  void addOmitted() {
    if (omitted_ > 0) addLabel(QStringLiteral("[+%1]").arg(omitted_), firstOmitted_);
    omitted_ = 0;
  }

  // Labels that follow each other share one range, so that a flood of controls costs no more than a text.
  void addLabel(const QString& label, std::size_t offset) {
    auto& formats = result_.formats;
    const qsizetype start = result_.text.size();
    if (!formats.isEmpty() && formats.last().start + formats.last().length == start) {
      formats.last().length += static_cast<int>(label.size());
    } else if (formats.size() < kMostColouredLabels) {
      formats.append(coloured(start, label.size(), labelColor_));
    }
    result_.text.append(label);
    fillOffsets(offset);
  }

  void fillOffsets(std::size_t offset) {
    result_.offsets.resize(static_cast<std::size_t>(result_.text.size()), static_cast<std::uint32_t>(offset));
  }

  QColor labelColor_;
  DrawnControls controls_;
  DrawnText result_;
  int marks_ = 0;
  int omitted_ = 0;
  std::size_t firstOmitted_ = 0;
};

}  // namespace

DrawnText drawn(std::string_view bytes, const QColor& labelColor, DrawnControls controls) {
  Drawing drawing(labelColor, controls);
  for (std::size_t offset = 0; offset < bytes.size();) {
    const CodePoint point = codePointAt(bytes, offset);
    drawing.add(point.value, offset);
    offset += point.length;
  }
  return drawing.take(bytes.size());
}

QTextLayout::FormatRange coloured(qsizetype start, qsizetype length, const QColor& color) {
  QTextLayout::FormatRange range;
  range.start = static_cast<int>(start);
  range.length = static_cast<int>(length);
  range.format.setForeground(color);
  return range;
}

}  // namespace tarnix::qt
