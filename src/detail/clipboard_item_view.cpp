#include "detail/clipboard_item_view.h"

#include <chrono>
#include <utility>

#include "detail/quick_look_preview.h"
#include "detail/relative_text.h"
#include "detail/scrollable_attributed_text_view.h"
#include "detail/scrollable_text_view.h"
#include "detail/url_icon.h"
#include "detail/watching_key.h"
#include "platform/platform.h"
#include "platform/swiftui/elements.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;

constexpr auto kPause = 500ms;  // Of the watching, in which the clip's own way back passes unnoticed.
constexpr modifiers::Font kLargeSymbolFont{.size = 50};
constexpr modifiers::Font kTitle2{.style = modifiers::Font::Style::title2};

View noPreview() {
  return VStack({
      Image("exclamationmark.triangle")
          .symbolRenderingMode(modifiers::SymbolRenderingMode::hierarchical)
          .font(kLargeSymbolFont)
          .padding(),
      Text("Cannot preview content").font(kTitle2).foregroundStyle(modifiers::ForegroundStyle::secondary),
  });
}

View plainTextView(const String& text) {
  return ScrollableTextView{.text = Binding<String>::constant(text),
                            .font = NSFont::controlContentFontOfSize(0)};
}

// Of a path that holds a URL, what follows the last beginning of one.
String shownPath(const String& path) {
  const std::size_t last = path.view().rfind("file:");
  return String(path.view().substr(last + std::string_view("file:").size()));
}

std::vector<View> pathBlock(const URL& url) {
  const String path = url.path();
  const bool holdsURL = path.view().find("file:/") != std::string_view::npos;
  std::vector<View> block{Group({
      Text("File path:").font({.isBold = true}).foregroundStyle(modifiers::ForegroundStyle::secondary),
      verbatimText(holdsURL ? shownPath(path) : path)
          .multilineTextAlignment(modifiers::TextAlignment::center)
          .foregroundStyle(modifiers::ForegroundStyle::secondary)
          .padding({.leading = 40})
          .padding({.trailing = 40}),
  })};
  if (holdsURL) block.push_back(Spacer());
  return block;
}

String applicationName(const URL& url) {
  const auto known = NSWorkspace::sharedWorkspace().localizedName(url);
  const String name = known ? *known : url.lastPathComponent();
  constexpr std::string_view kExtension = ".app";
  if (!name.view().ends_with(kExtension)) return name;
  return String(name.view().substr(0, name.size() - kExtension.size()));
}

}  // namespace

ClipboardItemView::ClipboardItemView(ClipboardItem clip, MoveToTop move)
    : timer(Timer::publish(1s, {.tolerance = {}, .mode = RunLoop::Mode::common})),
      watching(watchingKey()),
      item(std::move(clip)),
      moveToTop(std::move(move)),
      rtfReading([] { return std::make_shared<RtfReading>(); }) {}

View ClipboardItemView::body() const {
  return VStack({content(), footer()}, 0)
      .onReceive<Date>(timer, [this] { redraw.set(!redraw.get()); })
      .toolbar(toolbarItems());
}

View ClipboardItemView::content() const {
  switch (item->itemType) {
    case ClipboardItemType::fileItem:
      return file();
    case ClipboardItemType::textItem:
      return text();
    case ClipboardItemType::unassigned:
      break;
  }
  return noPreview();
}

View ClipboardItemView::text() const {
  const bool isPlain = !item->possibleRtf || (!showRtf.get() && item->hasRtfVariant());
  return VStack({isPlain ? plainText() : richText()}, 0).navigationTitle("Text");
}

View ClipboardItemView::plainText() const {
  return item->possibleText ? plainTextView(*item->possibleText) : noPreview();
}

View ClipboardItemView::richText() const {
  const RtfReading::Result read = rtfReading->textOf(*item->possibleRtf);
  if (read.text) return ScrollableAttributedTextView{.attributedText = read.text};
  return read.isBeingRead ? plainTextView(item->possibleText.value_or("")) : noPreview();
}

View ClipboardItemView::file() const {
  const URL url = item->possibleFileUrl.value();
  std::vector<View> children;
  if (url.isFileURL())
    children.push_back(QuickLookPreview{.shouldCleanUp = false, .previewItem = std::make_shared<NSURL>(url)});
  children.push_back(Spacer());
  for (View& each : pathBlock(url)) children.push_back(std::move(each));
  children.push_back(Button([url] { NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({url}); },
                            Text("Show in Finder"))
                         .padding());
  return VStack(std::move(children), 0).navigationTitle("File");
}

View ClipboardItemView::footer() const {
  std::vector<View> parts{informationButton(), Spacer()};
  if (item->sourceAppURL) parts.push_back(source());
  if (isAgeKnown()) parts.push_back(age());
  return VStack({Divider(), HStack(std::move(parts), 0)}, 0);
}

View ClipboardItemView::informationButton() const {
  const bool isOpen = showInfo.get();
  return Button([this] { showInfo.set(!showInfo.get()); }, Label("", "info.bubble"))
      .padding()
      .padding({.top = 0})
      .padding({.bottom = 0})
      .symbolRenderingMode(isOpen ? modifiers::SymbolRenderingMode::palette
                                  : modifiers::SymbolRenderingMode::hierarchical)
      .buttonStyle(modifiers::ButtonStyle::borderless)
      .labelStyle(modifiers::LabelStyle::iconOnly)
      .font({.size = 18})
      .foregroundStyle(isOpen ? modifiers::ForegroundStyle::accent : modifiers::ForegroundStyle::primary)
      .popover(showInfo.projectedValue(), types());
}

View ClipboardItemView::types() const {
  const auto row = [names = item->types](std::size_t position) {
    return verbatimText("\xE2\x80\xA2 " + names[position].str());
  };
  return VStack(
      {List({Section("Content Type", {.count = item->types.size(), .row = row, .positionOfTag = {}})})
           .listStyle(modifiers::ListStyle::inset)});
}

View ClipboardItemView::source() const {
  const URL& url = *item->sourceAppURL;
  return Group({
      Label(verbatimText(applicationName(url)).font({.isBold = true}),
            View(URLIcon{url}).frame({.height = 16}))
          .padding({.trailing = 20}),
      Divider().frame({.height = 40}),
  });
}

// Reads `redraw`, so that each tick leads here.
bool ClipboardItemView::isAgeKnown() const {
  static_cast<void>(redraw.get());
  return item->date.has_value();
}

View ClipboardItemView::age() const {
  return verbatimLabel(relativeText(*item->date), "clock").padding().padding({.bottom = 2});
}

std::vector<View> ClipboardItemView::toolbarItems() const {
  using Placement = elements::ToolbarPlacement;
  std::vector<View> items;
  if (item->hasRtfVariant()) {
    items.push_back(ToolbarItem(Placement::primaryAction,
                                Toggle(showRtf.projectedValue(), Label("Rich Text", "doc.richtext"))
                                    .labelStyle(modifiers::LabelStyle::titleAndIcon)));
  }
  items.push_back(ToolbarItem(Placement::automatic, HStack({Divider().frame({.height = 50})})));
  items.push_back(
      ToolbarItem(Placement::primaryAction, Button([this] { copyBack(); }, Image("paperclip"))
                                                .disabled(item->itemType == ClipboardItemType::fileItem)
                                                .help("Copy item back to the main clipboard")));
  return items;
}

void ClipboardItemView::copyBack() const {
  const bool wasWatching = watching.get();
  if (wasWatching) watching.set(false);
  writeToPasteboard();
  if (moveToTop.get()) moveToTop.get()(item.get());
  if (wasWatching) RunLoop::main().performAfter(kPause, [watching = watching] { watching.set(true); });
}

void ClipboardItemView::writeToPasteboard() const {
  if (item->itemType != ClipboardItemType::textItem) return;
  const bool isRich = item->possibleRtf && (showRtf.get() || !item->possibleText);
  const auto& text = isRich ? item->possibleRtf : item->possibleText;
  if (!text) return;
  const auto pasteboard = NSPasteboard::generalPasteboard();
  pasteboard->clearContents();
  pasteboard->setString(*text, isRich ? NSPasteboardTypeRTF : NSPasteboardTypeString);
}

}  // namespace tarnix
