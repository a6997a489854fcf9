#pragma once

#include <QString>

#include "platform/foundation/string.h"

namespace tarnix::qt {

// Copies a text as any program does: it becomes this program's generation of the general pasteboard. The
// toolkit's own clipboard is left alone, since it waits for owners that don't answer.
void copyToPasteboard(const String& text);

// What was copied, at most `limit` UTF-16 units; empty when it is no text.
QString copiedText(int limit);

}  // namespace tarnix::qt
