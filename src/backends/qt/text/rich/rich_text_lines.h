#pragma once

class QPainter;
class QTextDocument;

namespace tarnix::qt {

// Draws the lines of the text that the toolkit doesn't: twofold and thick ones.
void drawAddedLines(QPainter& painter, const QTextDocument& document);

}  // namespace tarnix::qt
