#pragma once

#include <memory>

#include "platform/appkit/color.h"
#include "platform/appkit/text_storage.h"
#include "platform/appkit/view.h"
#include "platform/foundation/notification.h"

namespace tarnix {

class NSScrollView;

// Width and height in points.
struct NSSize {
  CGFloat width = 0;
  CGFloat height = 0;

  friend bool operator==(const NSSize&, const NSSize&) = default;
};

// What a text view tells of what the user does in it.
class NSTextViewDelegate {
 public:
  virtual ~NSTextViewDelegate() = default;
  // The object of the notification is the text view.
  virtual void textDidChange(const NSNotification& notification) = 0;
};

// A view of a text. Owned by `shared_ptr`.
class NSTextView : public NSView {
 public:
  NSTextView();
  // A text view inside a scroll view, as its document.
  static std::shared_ptr<NSScrollView> scrollableTextView();

  const String& string() const { return storage_->string(); }
  // In the font of the view, with no other attributes. The delegate is not told.
  void setString(const String& text) { storage_->setPlain(text, font_); }
  const NSAttributedString& attributedString() const { return storage_->attributedString(); }
  const std::shared_ptr<NSTextStorage>& textStorage() const { return storage_; }
  const std::shared_ptr<NSTextContainer>& textContainer() const { return container_; }

  const NSFont& font() const { return font_; }
  // Of all the text, and of what `setString` brings.
  void setFont(const NSFont& font);
  // Of text that has no colour of its own.
  const NSColor& textColor() const { return textColor_; }
  void setTextColor(const NSColor& color) { change(textColor_, color); }
  const NSColor& backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(const NSColor& color) { change(backgroundColor_, color); }
  bool drawsBackground() const { return drawsBackground_; }
  void setDrawsBackground(bool drawsBackground) { change(drawsBackground_, drawsBackground); }
  // Colours of the text are changed where they could not be read on a dark background.
  bool usesAdaptiveColorMappingForDarkAppearance() const { return usesAdaptiveColorMapping_; }
  void setUsesAdaptiveColorMappingForDarkAppearance(bool uses) { change(usesAdaptiveColorMapping_, uses); }
  // Free on the left and right, above and below the text.
  NSSize textContainerInset() const { return textContainerInset_; }
  void setTextContainerInset(NSSize inset) { change(textContainerInset_, inset); }

  bool isEditable() const { return isEditable_; }
  void setEditable(bool isEditable) { change(isEditable_, isEditable); }
  bool isSelectable() const { return isSelectable_; }
  void setSelectable(bool isSelectable) { change(isSelectable_, isSelectable); }
  bool allowsUndo() const { return allowsUndo_; }
  void setAllowsUndo(bool allowsUndo) { change(allowsUndo_, allowsUndo); }
  // Not kept alive.
  std::shared_ptr<NSTextViewDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(const std::shared_ptr<NSTextViewDelegate>& delegate) { delegate_ = delegate; }

  // The user has changed the text to this one, which the delegate is told.
  void textWasEdited(const String& text);
  void textWasEdited(const NSAttributedString& text);
  // The user has clicked on a link. False unless it leads to a page of the web or an address for mail, which
  // the desktop is asked to open.
  static bool clickedOnLink(const String& link);
  static bool canOpenLink(const String& link);

 private:
  void tellDelegate();

  std::shared_ptr<NSTextStorage> storage_;
  std::shared_ptr<NSTextContainer> container_;
  NSFont font_;
  NSColor textColor_ = NSColor::systemColor("textColor");
  NSColor backgroundColor_ = NSColor::systemColor("textBackgroundColor");
  NSSize textContainerInset_;
  bool drawsBackground_ = true;
  bool usesAdaptiveColorMapping_ = false;
  bool isEditable_ = true;
  bool isSelectable_ = true;
  bool allowsUndo_ = false;
  std::weak_ptr<NSTextViewDelegate> delegate_;
};

}  // namespace tarnix
