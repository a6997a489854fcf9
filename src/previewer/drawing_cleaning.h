#pragma once

#include <QByteArray>
#include <optional>

namespace tarnix::previewer {

// An SVG document that can be rendered without a look at anything outside it: no document type, no entities,
// no reference but to its own fragments and to data that it holds. What goes beyond is left out; absent where
// the document is not well-formed, or is deeper or larger than drawings are.
std::optional<QByteArray> cleanedDrawing(const QByteArray& svg);

}  // namespace tarnix::previewer
