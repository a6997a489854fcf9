#pragma once

#include <QTextFragment>
#include <functional>
#include <optional>

#include "backends/qt/text/plain/piece_layout.h"
#include "backends/qt/widgets/text_editor.h"
#include "platform/appkit/attributed_string.h"

namespace tarnix::qt {

// A text with a look of its own to write in. What stays keeps its look, what is written takes that of the
// text before it. The cells of tables are paragraphs, one below the other.
class RichTextEditor : public TextEditor {
 public:
  // Texts above this size are for reading: the toolkit lays out all of a text that can be written in.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 20;

  explicit RichTextEditor(QWidget* parent = nullptr) : TextEditor(parent) {}

  // What is undone, selected and in sight stays when text and colours are the same.
  void setAttributedText(const NSAttributedString& text, const TextColors& colors);
  // Called with what the user has made of the text.
  void setEdited(std::function<void(const NSAttributedString&)> edited) { edited_ = std::move(edited); }

 protected:
  void noteEdited() override;

 private:
  void fill();
  TextAttributes attributesIn(const QTextFormat& format, int property) const;
  void appendFragment(AttributedStringBuilder& builder, const QTextFragment& fragment) const;
  NSAttributedString written() const;

  NSAttributedString shown_;
  NSAttributedString filled_;  // Whose attributes and styles the document's formats name.
  std::optional<TextColors> colors_;
  std::function<void(const NSAttributedString&)> edited_;
};

}  // namespace tarnix::qt
