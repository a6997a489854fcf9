#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <variant>
#include <vector>

#include "platform/foundation/string.h"
#include "previewer/protocol/messages.h"

// What there is to show of a source.
namespace tarnix::qt {

struct PreviewFailure {
  QString reason;  // For people, in one line.
};

struct PreviewPicture {
  QImage image;
  QSize storedSize;  // In pixels; for a drawing, in points.
};

struct PreviewText {
  String text;
  std::uint64_t shownBytes = 0;
  std::uint64_t fileBytes = 0;
};

struct PreviewPage {
  std::size_t page = 0;
  QImage image;
};

// Entries and pages come behind their folder or document.
using PreviewAnswer =
    std::variant<PreviewFailure, PreviewPicture, PreviewText, previewing::Information, previewing::Document,
                 previewing::Folder, std::vector<previewing::Entry>, PreviewPage>;

}  // namespace tarnix::qt
