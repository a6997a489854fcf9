#pragma once

#include <QString>

#include "platform/foundation/localized_strings.h"
#include "platform/foundation/string.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {

QString toQString(std::string_view text);
String fromQString(const QString& text);

// A fixed text in the user's language. A key that no table has is shown as it is.
QString localized(LocalizedKey key);
QString localizedText(const String& key);
// What is to be read, in the user's language unless it is to be shown as it is.
QString shownText(const elements::Text& text);
QString shownTitle(const LabelParts& label);

// How much of a row's title is ever looked at, in UTF-16 units; a title may be as large as a clip.
constexpr qsizetype kTitleLimit = 300;

// The first `kTitleLimit` units of the text, cut between characters and closed with an ellipsis where more
// follows. Characters that assistive tools cannot be told of are blanks.
QString titleStart(std::string_view title);
// What stands for a title that nobody could see, for want of text or of anything but blanks; else empty.
QString placeholderFor(const QString& title);
// A title on one line: control characters, with the blanks around them, are one blank; none is in front.
QString singleLine(const QString& title);

}  // namespace tarnix::qt
