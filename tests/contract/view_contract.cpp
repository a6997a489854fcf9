#include "contract/view_contract.h"

#include <gmock/gmock.h>

#include "contract/text_host.h"

namespace tarnix::test {
namespace {

template <typename T>
Binding<T> bindingTo(T& value) {
  return {[&value] { return value; }, [&value](T written) { value = std::move(written); }};
}

}  // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ViewContract);

TEST_P(ViewContract, textsAreShownAsTheyStandAndFollowTheTree) {
  String text("first");
  bool isSecondThere = true;
  stage->show([&] {
    std::vector<View> views{Text(text), Divider(), Spacer(), verbatimText("<b>as it stands</b>")};
    if (isSecondThere) views.push_back(Label("second", "trash"));
    return VStack(views).padding().padding({.leading = 3}).background(Color(1, 0, 0)).frame({.width = 300});
  });
  for (const char* shown : {"first", "<b>as it stands</b>", "second"})
    EXPECT_TRUE(stage->shows(shown)) << shown;
  text = "other";
  isSecondThere = false;
  stage->settle();
  EXPECT_TRUE(stage->shows("other"));
  for (const char* gone : {"first", "second"}) EXPECT_FALSE(stage->shows(gone)) << gone;
}

TEST_P(ViewContract, buttonsRunTheActionThatTheyHaveNow) {
  std::vector<std::string> done;
  std::string action = "first";
  stage->show([&] {
    return HStack({Button([&done, action] { done.push_back(action); }, Text("Do")),
                   Button([&done] { done.push_back("symbol"); }, Label("Only by name", "trash"))
                       .labelStyle(modifiers::LabelStyle::iconOnly)
                       .help("tells more")});
  });
  EXPECT_TRUE(stage->press("Do"));
  action = "second";
  stage->settle();
  EXPECT_TRUE(stage->press("Do"));
  EXPECT_TRUE(stage->press("Only by name"));
  EXPECT_FALSE(stage->press("Nothing"));
  EXPECT_THAT(done, ::testing::ElementsAre("first", "second", "symbol"));
}

TEST_P(ViewContract, togglesShowAndWriteTheirBinding) {
  bool isOn = false;
  bool isSwitch = true;
  stage->show([&] {
    const auto style = isSwitch ? modifiers::ToggleStyle::switchControl : modifiers::ToggleStyle::automatic;
    return VStack(
        {Toggle("Active", bindingTo(isOn)).toggleStyle(style), Toggle(bindingTo(isOn), Text("By view"))});
  });
  EXPECT_FALSE(stage->isOn("Active"));
  EXPECT_TRUE(stage->flip("Active"));
  EXPECT_TRUE(isOn);
  stage->settle();
  EXPECT_TRUE(stage->isOn("By view"));
  isOn = false;
  isSwitch = false;
  stage->settle();
  EXPECT_FALSE(stage->isOn("Active"));
}

TEST_P(ViewContract, whatIsDisabledTakesNoInputHoweverDeepItStands) {
  bool isDisabled = true;
  int presses = 0;
  bool isOn = false;
  stage->show([&] {
    return VStack({HStack({Button([&] { ++presses; }, Text("Do")).disabled(false),
                           Toggle("Active", bindingTo(isOn))})})
        .disabled(isDisabled);
  });
  EXPECT_FALSE(stage->press("Do") || stage->flip("Active"));
  EXPECT_FALSE(presses > 0 || isOn);
  isDisabled = false;
  stage->settle();
  EXPECT_TRUE(stage->press("Do") && stage->flip("Active"));
  EXPECT_TRUE(presses == 1 && isOn);
}

TEST_P(ViewContract, theKeyboardGoesThroughWhatTakesInputInReadingOrder) {
  bool isDisabled = true;
  bool isLastThere = true;
  stage->show([&] {
    const View toggle = Toggle("Active", {[] { return true; }, [](bool) {}});
    std::vector<View> views{HStack({Button([] {}, Text("First")), toggle}),
                            Button([] {}, Text("Second")).disabled(isDisabled)};
    if (isLastThere) views.push_back(VStack({Text("no control"), Button([] {}, Text("Last"))}));
    return VStack(views);
  });
  EXPECT_THAT(stage->focusOrder(), ::testing::ElementsAre("First", "Active", "Last"));
  isDisabled = false;
  stage->settle();
  EXPECT_THAT(stage->focusOrder(), ::testing::ElementsAre("First", "Active", "Second", "Last"));
  isLastThere = false;
  stage->settle();
  EXPECT_THAT(stage->focusOrder(), ::testing::ElementsAre("First", "Active", "Second"));
}

TEST_P(ViewContract, aNameGivenToAssistiveToolsGoesWhenItIsTakenAway) {
  bool isNamed = true;
  stage->show([&] {
    const View button = Button([] {}, Text("Title"));
    const View toggle = Toggle("Label", {[] { return true; }, [](bool) {}});
    return VStack({isNamed ? button.accessibilityLabel("Given") : button,
                   isNamed ? toggle.accessibilityLabel("Given") : toggle});
  });
  EXPECT_TRUE(stage->hasButton("Given") && stage->hasToggle("Given"));
  isNamed = false;
  stage->settle();
  EXPECT_TRUE(stage->hasButton("Title") && stage->hasToggle("Label"));
  EXPECT_FALSE(stage->hasButton("Given") || stage->hasToggle("Given"));
}

TEST_P(ViewContract, aListShowsItsRowsAndWritesWhatIsPicked) {
  using Row = ViewStage::Row;
  std::vector<std::pair<UUID, String>> clips{{UUID::random(), "new"}, {UUID::random(), "old"}};
  std::optional<UUID> selection = clips[0].first;
  String sought;
  stage->show([&] {
    const auto row = [&](std::size_t i) {
      return NavigationLink({Image("doc"), verbatimText(clips.at(i).second)})
          .badge(i + 1)
          .tag(clips.at(i).first);
    };
    const auto positionOf = [&](const UUID& tag) -> std::optional<std::size_t> {
      for (std::size_t i = 0; i < clips.size(); ++i) {
        if (clips[i].first == tag) return i;
      }
      return std::nullopt;
    };
    const View section = Section("Clips", {.count = clips.size(), .row = row, .positionOfTag = positionOf});
    return NavigationView(List(bindingTo(selection), {section})
                              .listStyle(modifiers::ListStyle::sidebar)
                              .searchable(bindingTo(sought), modifiers::SearchFieldPlacement::sidebar),
                          TextHost{selection ? clips.at(*positionOf(*selection)).second : String("none")});
  });
  EXPECT_THAT(stage->rows(), ::testing::ElementsAre(Row{"new", "1", true}, Row{"old", "2", false}));
  EXPECT_TRUE(stage->pick(1));
  EXPECT_EQ(selection, clips[1].first);
  stage->settle();
  EXPECT_EQ(stage->text(), "old");
  clips.insert(clips.begin(), {UUID::random(), "newest"});
  stage->settle();
  EXPECT_THAT(stage->rows(), ::testing::ElementsAre(Row{"newest", "1", false}, Row{"new", "2", false},
                                                    Row{"old", "3", true}));
  EXPECT_TRUE(stage->search("ne"));
  EXPECT_EQ(sought, String("ne"));
}

TEST_P(ViewContract, aHostsViewIsMadeOnceForItsPlaceAndFollowsItsHost) {
  int made = 0;
  int dismantled = 0;
  String text("first");
  std::optional<std::size_t> limit;
  UUID identity = UUID::random();
  stage->show([&] {
    const View stack = VStack({Text("above"), View(TextHost{text, &made, &dismantled}).id(identity)});
    return limit ? stack.lineLimit(*limit) : stack;
  });
  EXPECT_EQ(stage->text(), "first");
  text = "second";
  limit = 7;
  stage->settle();
  EXPECT_EQ(stage->text(), "second7") << "and knows what is around it";
  EXPECT_EQ(made, 1);
  EXPECT_EQ(dismantled, 0);
  identity = UUID::random();
  stage->settle();
  EXPECT_EQ(made, 2);
  EXPECT_EQ(dismantled, 1) << "its place is gone";
  EXPECT_EQ(stage->text(), "second7");
  stage.reset();
  EXPECT_EQ(dismantled, 2) << "all places are";
}

TEST_P(ViewContract, aDialogComesAndGoesAndItsActionMayAskAgain) {
  bool isPresented = false;
  int questions = 0;
  stage->show([&] {
    return Button([&] { isPresented = true; }, Text("Ask"))
        .confirmationDialog("Sure?", bindingTo(isPresented),
                            {Button([&] { isPresented = ++questions < 2; }, Text("Ask again"),
                                    elements::ButtonRole::destructive),
                             Button([] {}, Text("Cancel"), elements::ButtonRole::cancel)},
                            "message");
  });
  EXPECT_EQ(stage->dialog(), std::nullopt);
  ASSERT_TRUE(stage->press("Ask"));
  stage->settle();
  ASSERT_EQ(stage->dialog(), "Sure?");
  ASSERT_TRUE(stage->choose("Ask again"));
  stage->settle();
  ASSERT_EQ(stage->dialog(), "Sure?") << "what the action says counts";
  ASSERT_TRUE(stage->choose("Ask again"));
  stage->settle();
  EXPECT_EQ(stage->dialog(), std::nullopt);
  isPresented = true;
  stage->settle();
  ASSERT_TRUE(stage->choose("Cancel"));
  EXPECT_FALSE(isPresented);
  EXPECT_EQ(questions, 2);
}

TEST_P(ViewContract, aPopoverShowsItsContentUntilTheUserTurnsElsewhere) {
  bool isOpen = false;
  std::vector<std::string> names{"one", "two"};
  stage->show([&] {
    const auto row = [&](std::size_t position) { return verbatimText(names[position]); };
    return Button([&] { isOpen = !isOpen; }, Text("More"))
        .popover(bindingTo(isOpen),
                 VStack({List({Section("Names", {.count = names.size(), .row = row, .positionOfTag = {}})})
                             .listStyle(modifiers::ListStyle::inset)}));
  });
  EXPECT_EQ(stage->popoverRows(), std::nullopt);
  EXPECT_TRUE(stage->press("More"));
  stage->settle();
  EXPECT_EQ(stage->popoverRows(), names);
  names.pop_back();
  stage->settle();
  EXPECT_EQ(stage->popoverRows(), names);
  stage->leavePopover();
  stage->settle();
  EXPECT_FALSE(isOpen);
  EXPECT_EQ(stage->popoverRows(), std::nullopt);
  isOpen = true;
  stage->settle();
  isOpen = false;
  stage->settle();
  EXPECT_EQ(stage->popoverRows(), std::nullopt);
}

TEST_P(ViewContract, labelsAndTogglesMayBeMadeOfViews) {
  bool isOn = false;
  stage->show([&] {
    return VStack({Group({Label(verbatimText("Source").font({.isBold = true}), Picture({{"any"}, "/a.txt"})),
                          Divider().frame({.height = 40})}),
                   Toggle(bindingTo(isOn), Label("Rich", "doc.richtext"))
                       .labelStyle(modifiers::LabelStyle::titleAndIcon)},
                  0);
  });
  EXPECT_TRUE(stage->shows("Source"));
  EXPECT_TRUE(stage->flip("Rich"));
  EXPECT_TRUE(isOn && stage->isOn("Rich"));
}

TEST_P(ViewContract, theToolbarAndTheTitleAreThoseOfTheDetail) {
  String title("One");
  int presses = 0;
  stage->show([&] {
    const View body = VStack({VStack({TextHost{"body"}}).navigationTitle(title)});
    return NavigationView(Text("side"),
                          body.toolbar({ToolbarItem(elements::ToolbarPlacement::automatic,
                                                    Button([&] { presses += 10; }, Text("Own")))}))
        .navigationTitle("whole")
        .toolbar(
            {ToolbarItem(elements::ToolbarPlacement::navigation, Button([&] { ++presses; }, Text("Item")))});
  });
  EXPECT_TRUE(stage->press("Item"));
  EXPECT_TRUE(stage->press("Own"));
  EXPECT_EQ(presses, 11);
  EXPECT_EQ(stage->text(), "body");
  EXPECT_TRUE(stage->shows("One"));
  title = "Two";
  stage->settle();
  EXPECT_TRUE(stage->shows("Two"));
  EXPECT_FALSE(stage->shows("One"));
}

}  // namespace tarnix::test
