#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

#include "platform/appkit/attributed_string.h"

namespace tarnix {

// The text of a text view. A plain text, in one font, shares the bytes of what it was set to.
class NSTextStorage {
 public:
  explicit NSTextStorage(std::function<void()> changed) : changed_(std::move(changed)) {}
  NSTextStorage(const NSTextStorage&) = delete;
  NSTextStorage& operator=(const NSTextStorage&) = delete;

  const String& string() const { return isPlain() ? text_ : attributed_->string(); }
  // Made when it is first asked for where the text is plain, which must be well-formed then.
  const NSAttributedString& attributedString() const;
  // Notes a change, also for an equal text.
  void setAttributedString(NSAttributedString text);

  // Whether the text has one font throughout and no other attributes; and that font.
  bool isPlain() const { return plainFont_.has_value(); }
  const std::optional<NSFont>& plainFont() const { return plainFont_; }
  void setPlain(String text, const NSFont& font);
  // Takes the place of all fonts that the text has.
  void setFont(const NSFont& font);

 private:
  std::function<void()> changed_;
  String text_;
  std::optional<NSFont> plainFont_ = NSFont();
  mutable std::optional<NSAttributedString> attributed_;
};

// Where a text view lays its text out.
class NSTextContainer {
 public:
  explicit NSTextContainer(std::function<void()> changed) : changed_(std::move(changed)) {}
  NSTextContainer(const NSTextContainer&) = delete;
  NSTextContainer& operator=(const NSTextContainer&) = delete;

  // 0 is no limit.
  std::size_t maximumNumberOfLines() const { return maximumNumberOfLines_; }
  void setMaximumNumberOfLines(std::size_t lines) {
    if (std::exchange(maximumNumberOfLines_, lines) != lines) changed_();
  }

 private:
  std::function<void()> changed_;
  std::size_t maximumNumberOfLines_ = 0;
};

}  // namespace tarnix
