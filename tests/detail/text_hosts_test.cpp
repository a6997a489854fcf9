#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "backends/simulated/desktop.h"
#include "detail/scrollable_attributed_text_view.h"
#include "detail/scrollable_text_view.h"
#include "platform/swiftui/elements.h"

namespace tarnix {
namespace {

using testing::ElementsAre;

NSAttributedString underlined(const char* text) {
  AttributedStringBuilder builder;
  TextAttributes attributes;
  attributes.font.familyName = "Serif";
  attributes.underline = LineStyle::single;
  builder.append(text, attributes);
  return builder.take();
}

// A window whose view the test changes.
class TextHosts : public testing::Test {
 protected:
  struct Root {
    TextHosts* test;
    State<int> changes{0};
    static auto state() { return std::tuple{&Root::changes}; }
    View body() const { return test->make(); }
  };

  void show(std::function<View()> view) {
    make = std::move(view);
    window.emplace(View(root), desktop.runLoop());
    writes = 0;
    writesSeen = view_().changes().sink([this](const Void&) { ++writes; });
  }
  void evaluate() {
    root.changes.set(*root.changes + 1);
    desktop.advance({});
  }
  NSTextView& view_() { return *window->textView(); }
  NSScrollView& scrollView() {
    const auto tree = window->graph().tree();
    return static_cast<NSScrollView&>(*tree->as<elements::HostedView>()->view);
  }

  SimulatedDesktop desktop;
  std::function<View()> make;
  Root root{this};
  std::optional<simulated::Window> window;
  int writes = 0;
  AnyCancellable writesSeen;
};

TEST_F(TextHosts, makeTheirViewOnceForAPlaceAndBringItInLine) {
  String text("first");
  NSBorderType border = NSBorderType::lineBorder;
  UUID identity = UUID::random();
  show([&] {
    return View(ScrollableTextView{.text = Binding<String>::constant(text),
                                   .font = {"Serif", 20},
                                   .borderType = border,
                                   .drawsBackground = false})
        .id(identity);
  });
  const auto made = window->textView();
  EXPECT_TRUE(made->isSelectable() && made->allowsUndo() && !made->isEditable() && !made->drawsBackground());
  EXPECT_TRUE(made->usesAdaptiveColorMappingForDarkAppearance());
  EXPECT_EQ(made->textContainerInset(), (NSSize{5, 10}));
  EXPECT_EQ(made->attributedString().attributes()[0].font, (NSFont{"Serif", 20}));
  EXPECT_TRUE(scrollView().borderType() == border && !scrollView().drawsBackground());
  evaluate();
  EXPECT_EQ(writes, 0) << "nothing has changed";
  text = "second";
  border = NSBorderType::noBorder;
  evaluate();
  EXPECT_EQ(window->textView(), made);
  EXPECT_EQ(made->string(), "second");
  EXPECT_EQ(scrollView().borderType(), NSBorderType::noBorder);
  identity = UUID::random();
  evaluate();
  EXPECT_NE(window->textView(), made) << "another place";
}

TEST_F(TextHosts, standForDifferentPlacesWhereTheirTypesDiffer) {
  bool isPlain = true;
  show([&]() -> View {
    if (isPlain) return ScrollableTextView{.text = Binding<String>::constant("plain"), .font = {}};
    return ScrollableAttributedTextView{.attributedText = underlined("rich")};
  });
  EXPECT_EQ(window->text(), "NSTextView \"plain\"\n");
  const auto plain = window->textView();
  isPlain = false;
  evaluate();
  EXPECT_NE(window->textView(), plain);
  EXPECT_EQ(window->text(), "NSTextView \"rich\" attributed\n");
}

TEST_F(TextHosts, whatTheUserWritesGoesThroughTheBindingAndIsNotSetAgain) {
  String text("note");
  std::vector<std::string> written;
  show([&] {
    const Binding<String> binding{[&] { return text; },
                                  [&](const String& value) {
                                    text = value;
                                    written.push_back(value.str());
                                  }};
    return ScrollableTextView{.text = binding, .font = {}, .isEditable = true};
  });
  view_().textWasEdited("note!");
  view_().textWasEdited("note!!");
  EXPECT_THAT(written, ElementsAre("note!", "note!!"));
  const int edits = writes;
  evaluate();
  EXPECT_EQ(writes, edits) << "the texts are equal, so that none is set";
  const auto coordinator = std::dynamic_pointer_cast<ScrollableTextView::Coordinator>(view_().delegate());
  coordinator->textDidChange({"", nullptr});
  coordinator->textDidChange({"", scrollView().shared_from_this()});
  EXPECT_EQ(written.size(), 2U) << "told of something else";
}

TEST_F(TextHosts, anEqualOrAbsentAttributedTextIsNotWritten) {
  std::optional<NSAttributedString> text = underlined("rich");
  show([&] { return ScrollableAttributedTextView{.attributedText = text}; });
  EXPECT_EQ(view_().attributedString(), underlined("rich"));
  EXPECT_FALSE(view_().delegate() || view_().allowsUndo());
  EXPECT_EQ(view_().textColor(), NSColor::controlTextColor());
  text = underlined("rich");
  evaluate();
  text.reset();
  evaluate();
  EXPECT_EQ(writes, 0);
  EXPECT_EQ(view_().string(), "rich");
  text = underlined("other");
  evaluate();
  EXPECT_EQ(writes, 1);
  EXPECT_EQ(view_().attributedString(), underlined("other"));
}

TEST_F(TextHosts, aFontTakesThePlaceOfThoseOfTheTextAndLeavesTheRest) {
  show([&] {
    return ScrollableAttributedTextView{.attributedText = underlined("rich"),
                                        .font = NSFont{"Mono", 11},
                                        .backgroundColor = NSColor::systemColor("windowBackgroundColor")};
  });
  const TextAttributes& attributes = view_().attributedString().attributes()[0];
  EXPECT_EQ(attributes.font, (NSFont{"Mono", 11}));
  EXPECT_EQ(attributes.underline, LineStyle::single);
  EXPECT_EQ(view_().backgroundColor(), NSColor::systemColor("windowBackgroundColor"));
}

TEST_F(TextHosts, withoutALineLimitTheFormerOneStaysInForce) {
  std::optional<std::size_t> limit = 3;
  show([&] {
    const View host = ScrollableTextView{.text = Binding<String>::constant("text"), .font = {}};
    return limit ? host.lineLimit(*limit) : host;
  });
  EXPECT_EQ(view_().textContainer()->maximumNumberOfLines(), 3U);
  limit.reset();
  evaluate();
  EXPECT_EQ(view_().textContainer()->maximumNumberOfLines(), 3U);
  show([&] {
    return VStack({ScrollableAttributedTextView{.attributedText = underlined("rich")}}).lineLimit(2);
  });
  EXPECT_EQ(view_().textContainer()->maximumNumberOfLines(), 2U) << "from around it";
}

TEST(Links, openOnlyWhereTheyLeadToThePageOrAddressThatTheyName) {
  SimulatedDesktop desktop;
  for (const char* link : {"https://example.org/a?b#c", "HTTP://example.org", "mailto:a@example.org"})
    EXPECT_TRUE(NSTextView::clickedOnLink(link)) << link;
  for (const char* link : {"", "file:///etc/passwd", "javascript:alert(1)", "https:relative", "/etc/passwd",
                           " https://example.org", "https://example.org/a b", "smb://host", "--help"})
    EXPECT_FALSE(NSTextView::clickedOnLink(link)) << link;
  EXPECT_EQ(desktop.openedURLs().size(), 3U);
}

}  // namespace
}  // namespace tarnix
