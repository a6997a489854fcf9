#include "history/content_view.h"

#include <chrono>
#include <utility>

#include "detail/clipboard_item_view.h"
#include "detail/watching_key.h"
#include "platform/appkit/application.h"
#include "platform/platform.h"
#include "platform/swiftui/elements.h"

namespace tarnix {
namespace {

constexpr modifiers::Font kStripSymbolFont{.size = 18};
constexpr modifiers::Font kLargeSymbolFont{.size = 50};
constexpr modifiers::Font kTitle2{.style = modifiers::Font::Style::title2};

View emptyState() {
  return VStack({
      Image("rectangle.dashed.and.paperclip")
          .symbolRenderingMode(modifiers::SymbolRenderingMode::hierarchical)
          .font(kLargeSymbolFont)
          .padding(),
      Text("No clip selected").font(kTitle2).foregroundStyle(modifiers::ForegroundStyle::secondary),
      Text("Select a clip from the clipboard on the left\nto see more details")
          .multilineTextAlignment(modifiers::TextAlignment::center)
          .foregroundStyle(modifiers::ForegroundStyle::secondary)
          .padding(),
  });
}

View sidebarButton() {
  return ToolbarItem(elements::ToolbarPlacement::navigation,
                     Button([] { NSApp().sendAction("toggleSidebar:"); }, Image("sidebar.leading")));
}

}  // namespace

ContentView::ContentView()
    : watching(watchingKey()), clipboard(seedHistory(Pasteboard::general)), pasteboardObservable([] {
        return std::make_shared<NSPasteboard::Observable>(NSPasteboard::generalPasteboard());
      }) {}

View ContentView::body() const {
  return NavigationView(sidebar(), detail())
      .navigationTitle("")
      .toolbar({sidebarButton()})
      .onChange<std::vector<Pasteboard::Item>>([this] { return pboard->items(); }, [this] { capture(); });
}

void ContentView::capture() const {
  if (!watching.get()) return;
  const auto items = pboard->items();
  if (items.empty() || isSeed(items.front())) return;
  auto clip = ClipboardItem::capture(items.front(), pasteboardObservable->info());
  const UUID id = clip.id;
  clipboard.update([&](ClipHistory& history) { history.push_back(std::move(clip)); });
  selectedItemId.set(id);
}

bool ContentView::isSeed(const Pasteboard::Item& item) const {
  return !clipboard->empty() && clipboard->front().content == item;
}

void ContentView::takeLateSeed() const {
  clipboard.update([this](ClipHistory& history) {
    const ClipHistory seed = seedHistory(*pboard);
    history.insert(history.begin(), seed.begin(), seed.end());
  });
}

void ContentView::moveToTop(const ClipboardItem& clip) const {
  clipboard.update([&](ClipHistory& history) { tarnix::moveToTop(history, clip); });
}

void ContentView::clear() const { clipboard.set({}); }

View ContentView::sidebar() const {
  const FilteredClips clips(*clipboard, *searchText);
  return VStack({
      List(selectedItemId.projectedValue(),
           {Section("Tarnix",
                    {.count = clips.size(),
                     .row = [this, clips](std::size_t position) { return row(clips, position); },
                     .positionOfTag =
                         [this, clips](const UUID& tag) { return clips.positionOf(*clipboard, tag); }})})
          .listStyle(modifiers::ListStyle::sidebar)
          .searchable(searchText.projectedValue(), modifiers::SearchFieldPlacement::sidebar),
      Spacer(),
      Divider(),
      strip(),
  });
}

View ContentView::row(const FilteredClips& clips, std::size_t position) const {
  // A row can be asked for after its clip has gone, until the list is drawn again.
  const ClipboardItem* clip = clips.at(*clipboard, position);
  if (clip == nullptr) return NavigationLink({});
  return NavigationLink({Image(rawValue(clip->itemType)), verbatimText(clip->title)})
      .badge(position + 1)
      .tag(clip->id);
}

View ContentView::strip() const {
  return HStack({
      Toggle("Active", watching.projectedValue())
          .toggleStyle(modifiers::ToggleStyle::switchControl)
          .padding({.top = 8, .bottom = 15, .leading = 10}),
      Spacer(),
      clearButton(),
  });
}

View ContentView::clearButton() const {
  return Button([this] { showClearConfirmation.set(true); }, Label("Clear list", "trash"))
      .padding({.top = 8, .bottom = 15, .trailing = 10})
      .buttonStyle(modifiers::ButtonStyle::borderless)
      .labelStyle(modifiers::LabelStyle::iconOnly)
      .font(kStripSymbolFont)
      .help("Clear list of saved clips")
      .confirmationDialog(
          "Are you sure?", showClearConfirmation.projectedValue(),
          {Button([this] { clear(); }, Text("Delete all clips"), elements::ButtonRole::destructive),
           Button([] {}, Text("Cancel"), elements::ButtonRole::cancel)},
          "You are going to clear the list of saved clips; this action cannot be reverted!");
}

View ContentView::detail() const {
  const ClipboardItem* clip = clipWithId(*clipboard, *selectedItemId);
  if (clip == nullptr) return emptyState();
  return View(ClipboardItemView(*clip, [view = *this](const ClipboardItem& each) { view.moveToTop(each); }))
      .id(clip->id);
}

}  // namespace tarnix
