#pragma once

#include <memory>
#include <utility>

#include "platform/appkit/text_view.h"

namespace tarnix {

enum class NSBorderType { noBorder, lineBorder, bezelBorder, grooveBorder };

// A view that shows a part of another one, its document.
class NSScrollView : public NSView {
 public:
  const std::shared_ptr<NSTextView>& documentView() const { return documentView_; }
  void setDocumentView(std::shared_ptr<NSTextView> view) { change(documentView_, std::move(view)); }
  NSBorderType borderType() const { return borderType_; }
  void setBorderType(NSBorderType type) { change(borderType_, type); }
  bool drawsBackground() const { return drawsBackground_; }
  void setDrawsBackground(bool drawsBackground) { change(drawsBackground_, drawsBackground); }

 private:
  std::shared_ptr<NSTextView> documentView_;
  NSBorderType borderType_ = NSBorderType::noBorder;
  bool drawsBackground_ = true;
};

}  // namespace tarnix
