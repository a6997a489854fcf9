#include "backends/qt/theme/text.h"
#include "backends/qt/tree/slot.h"
#include "backends/qt/widgets/navigation_split.h"
#include "platform/appkit/application.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {
namespace {

using ToolbarContents = std::vector<const Element*>;

// Items for moving about stand at the front of the bar, the others in their order at its end.
void collectToolbar(const Element& element, ToolbarContents& leading, ToolbarContents& trailing) {
  for (const Element& attachment : element.attachments) {
    const auto* item = attachment.as<elements::ToolbarItem>();
    if (item == nullptr) continue;
    const bool isLeading = item->placement == elements::ToolbarPlacement::navigation;
    ToolbarContents& contents = isLeading ? leading : trailing;
    for (const Element& content : attachment.children) contents.push_back(&content);
  }
}

// The title of what is on show, else that of the whole.
String titleOf(const Element& navigation, const Element* detail) {
  const auto* title = detail == nullptr ? nullptr : navigationTitleIn(*detail);
  if (title == nullptr) title = navigation.modifier<modifiers::NavigationTitle>();
  return title == nullptr ? String() : title->title;
}

class NavigationPresenter : public WidgetPresenter<NavigationSplit> {
 public:
  explicit NavigationPresenter(Rendering& rendering)
      : WidgetPresenter(rendering),
        sidebar_(rendering),
        detail_(rendering),
        leading_(rendering),
        trailing_(rendering),
        toggling_(NSApp().addResponder("toggleSidebar:", [this] { widget()->toggleSidebar(); })) {}

  void show(const Element& element) override {
    const Element* sidebar = element.children.empty() ? nullptr : &element.children.front();
    const Element* detail = element.children.size() < 2 ? nullptr : &element.children[1];
    if (sidebar != nullptr && sidebar_.show(*sidebar)) widget()->setSidebar(sidebar_.widget());
    if (detail != nullptr && detail_.show(*detail)) widget()->setDetail(detail_.widget());
    widget()->setTitle(localizedText(titleOf(element, detail)));
    showToolbar(element, detail);
  }

 private:
  void showToolbar(const Element& element, const Element* detail) {
    ToolbarContents leading;
    ToolbarContents trailing;
    for (const Element* part : {&element, detail}) {
      if (part == nullptr) continue;
      collectToolbar(*part, leading, trailing);
    }
    const bool isLeadingChanged = leading_.show(leading);
    const bool isTrailingChanged = trailing_.show(trailing);
    if (isLeadingChanged || isTrailingChanged) widget()->setToolbar(leading_.widgets(), trailing_.widgets());
  }

  Slot sidebar_;
  Slot detail_;
  SlotList leading_;
  SlotList trailing_;
  AnyCancellable toggling_;
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::NavigationView>(Rendering& rendering, const Element&) {
  return std::make_unique<NavigationPresenter>(rendering);
}

// Placed by its navigation view.
template <>
std::unique_ptr<Presenter> presenterFor<elements::ToolbarItem>(Rendering&, const Element&) {
  return nullptr;
}

}  // namespace tarnix::qt
