#pragma once

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QtTest>
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "backends/qt/stage.h"
#include "backends/qt/text/rich/rich_text_view.h"
#include "backends/qt/theme/colors.h"
#include "backends/qt/theme/theme.h"

namespace tarnix::qt {

// A text put together by the line.
class Writer {
 public:
  Writer& write(const std::string& text, const TextAttributes& look = {}) {
    builder_.append(text, look);
    return *this;
  }
  Writer& end(const ParagraphStyle& style = {}, char separator = '\n', const TableCell* cell = nullptr) {
    builder_.endParagraph(separator, builder_.add(TextAttributes()), builder_.add(style), cell);
    return *this;
  }
  Writer& cell(const std::string& text, const TableCell& cell, bool isLast = false) {
    return write(text).end({}, isLast ? '\n' : '\t', &cell);
  }
  NSAttributedString take() { return builder_.take(); }

 private:
  AttributedStringBuilder builder_;
};

inline TextAttributes linked(const char* target) {
  TextAttributes look;
  look.link = target;
  return look;
}

class RichTextViewTest : public ::testing::Test {
 protected:
  RichTextViewTest() : former(QApplication::palette()) {
    view.resize(500, 400);
    view.setGround({}, true);
    view.setOpenLink([this](const String& link) { opened.push_back(link.str()); });
    static_cast<QWidget&>(view).show();
    view.setFocus();
    QApplication::processEvents();
  }
  ~RichTextViewTest() override { QApplication::setPalette(former); }

  QWidget& widget() { return view; }
  void setScheme(ColorScheme scheme) {
    QApplication::setPalette(themePalette(QPalette(), false, scheme));
    QApplication::processEvents();
  }
  QPoint before(std::size_t offset) { return view.caretRect(offset).center() + QPoint(1, 0); }
  std::size_t find(const char* text) { return view.text().view().find(text); }
  void click(std::size_t offset) { QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, before(offset)); }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }
  QAccessibleTextInterface& text() { return *QAccessible::queryAccessibleInterface(&view)->textInterface(); }

  PlatformScope platform{testPlatform()};
  QPalette former;
  RichTextView view;
  std::vector<std::string> opened;
};

// Between two places of a row: what stands out most against the commonest colour.
inline double drawnContrast(RichTextView& view, std::size_t begin, std::size_t end) {
  const QRect part = view.caretRect(begin).united(view.caretRect(end)).adjusted(1, 0, -1, 0);
  const QImage drawn = view.viewport()->grab(part).toImage();
  std::map<QRgb, int> counts;
  for (int i = 0; i < drawn.width() * drawn.height(); ++i)
    ++counts[drawn.pixel(i % drawn.width(), i / drawn.width())];
  const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
  const QColor ground(std::ranges::max_element(counts, byCount)->first);
  double most = 1;
  for (const auto& [color, count] : counts) most = std::max(most, contrast(QColor(color), ground));
  return most;
}

}  // namespace tarnix::qt
