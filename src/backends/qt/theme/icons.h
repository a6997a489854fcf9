#pragma once

#include <QIcon>

#include "platform/appkit/image.h"

namespace tarnix::qt {

// By the desktop's icon theme, else the picture that is named, else that of the kind of file. Null where
// there is none of these. Reads no more of a file at `path` than its name.
QIcon iconOf(const NSImage& image);

}  // namespace tarnix::qt
